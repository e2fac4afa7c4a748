#pragma once

#include "platform/Desktop.h"

namespace tarnvale {

/// The desktop's clipboard, by way of Qt. Needs a `QGuiApplication`.
class GuiClipboard : public Clipboard {
public:
    void setText(const std::string &text) override;
};

} // namespace tarnvale

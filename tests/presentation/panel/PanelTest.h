#pragma once

#include "presentation/panel/PortListController.h"
#include "presentation/shared/PresentationTest.h"

#include <memory>
#include <string>
#include <vector>

namespace tarnvale {

/// The state of the panel's list over a store on a fake system.
class PanelTest : public PresentationTest {
protected:
    /// Creates the store, waits for its first scan, and makes the list.
    void startList();
    void open();
    void close();
    /// One scan more, as far as the list shows it.
    void update();

    /// The first ports of the rows, from the top on.
    [[nodiscard]] std::vector<std::string> shown() const;
    /// The titles of the chips.
    [[nodiscard]] std::vector<std::string> chips() const;
    bool press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    std::unique_ptr<PortListController> list;
};

} // namespace tarnvale

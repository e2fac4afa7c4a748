#pragma once

#include "discovery/ListeningPort.h"

#include <string>

namespace tarnvale {

/// What the user's desktop does for us. Main thread; nothing here waits for another program.
class Desktop {
public:
    Desktop() = default;
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;
    virtual ~Desktop() = default;

    /// Opens an address with the program that the user chose for it.
    virtual void openUrl(const std::string &url) = 0;

    /// Shows the folder or file at `path` in the file manager.
    virtual void reveal(const std::string &path) = 0;

    /// Opens the file at `path` in the program for texts of its kind.
    virtual void openLog(const std::string &path) = 0;

    /// Brings the application at `hostApp`, as a record writes it, to the front: a window of the process tree
    /// above `pid` where windows can be told apart by process. False when it isn't running.
    [[nodiscard]] virtual bool focusApplication(const std::string &hostApp, Pid pid) = 0;

    /// The name that users know the application at `hostApp` by.
    [[nodiscard]] virtual std::string applicationName(const std::string &hostApp) const = 0;
};

/// The clipboard. Main thread.
class Clipboard {
public:
    Clipboard() = default;
    Clipboard(const Clipboard &) = delete;
    Clipboard &operator=(const Clipboard &) = delete;
    virtual ~Clipboard() = default;

    virtual void setText(const std::string &text) = 0;
};

} // namespace tarnvale

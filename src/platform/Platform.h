#pragma once

namespace tarnvale {

class Clipboard;
class Clock;
class CommandLauncher;
class Desktop;
class LoginItem;
class Machine;
class Notifications;
class PreviewCapturer;
class ProcessControl;
class Settings;
class Tools;

/// All that the program needs of the system that it runs on. Everything outlives what is given this.
struct Platform {
    Clock &clock;
    Machine &machine; ///< used on one background thread only
    ProcessControl &processes;
    Settings &settings;
    Notifications &notifications;
    CommandLauncher &launcher;
    Tools &tools;
    Desktop &desktop;
    Clipboard &clipboard;
    LoginItem &loginItem;
    PreviewCapturer &previewCapturer;
};

} // namespace tarnvale

<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>CommandPalette</name>
    <message>
        <source>⌘R</source>
        <translation>Ctrl+R</translation>
    </message>
</context>
<context>
    <name>GeneralSettings</name>
    <message>
        <source>Apps and macOS daemons that listen on ports (started from “/”). Off shows only dev servers.</source>
        <translation>Apps and system daemons that listen on ports (started from “/”). Off shows only dev servers.</translation>
    </message>
    <message>
        <source>Paste it in Terminal to use `tarnctl ports`, `tarnctl kill &lt;port&gt;` and `tarnctl open &lt;port&gt;`.</source>
        <translation>Paste it in a terminal to use `tarnctl ports`, `tarnctl kill &lt;port&gt;` and `tarnctl open &lt;port&gt;`.</translation>
    </message>
</context>
<context>
    <name>GlobalHotKey</name>
    <message>
        <source>Open the menu bar panel</source>
        <translation>Open the tray panel</translation>
    </message>
</context>
<context>
    <name>HotKeyChip</name>
    <message>
        <source>Press a shortcut with ⌘, ⌥ or ⌃ — Esc cancels</source>
        <translation>Press a shortcut with Super, Alt or Ctrl — Esc cancels</translation>
    </message>
</context>
<context>
    <name>LogsBlock</name>
    <message>
        <source>Open in Console</source>
        <translation>Open Log</translation>
    </message>
</context>
<context>
    <name>PortInspector</name>
    <message>
        <source>This Mac only</source>
        <translation>This computer only</translation>
    </message>
</context>
<context>
    <name>ShortcutSettings</name>
    <message>
        <source>Open the menu bar panel</source>
        <translation>Open the tray panel</translation>
    </message>
    <message>
        <source>Works from any app. Use ⌘, ⌥ or ⌃ with a key.</source>
        <translation>Works from any app. Use Super, Alt or Ctrl with a key.</translation>
    </message>
</context>
<context>
    <name>Sidebar</name>
    <message>
        <source>Settings (⌘,)</source>
        <translation>Settings (Ctrl+,)</translation>
    </message>
    <message>
        <source>Menu bar</source>
        <translation>Tray</translation>
    </message>
</context>
<context>
    <name>Toolbar</name>
    <message>
        <source>Hide sidebar (⌃⌘S)</source>
        <translation>Hide sidebar (F9)</translation>
    </message>
    <message>
        <source>Show sidebar (⌃⌘S)</source>
        <translation>Show sidebar (F9)</translation>
    </message>
    <message>
        <source>Refresh now (⌘R)</source>
        <translation>Refresh now (Ctrl+R)</translation>
    </message>
</context>
<context>
    <name>WelcomeView</name>
    <message>
        <source>Every local dev server, one click away — in the menu bar and here.</source>
        <translation>Every local dev server, one click away — in the tray and here.</translation>
    </message>
    <message>
        <source>Press the shortcut in any app to open the menu bar panel.</source>
        <translation>Press the shortcut in any app to open the tray panel.</translation>
    </message>
</context>
<context>
    <name>OverviewView</name>
    <message>
        <source>1 server is listening on this Mac.</source>
        <translation>1 server is listening on this computer.</translation>
    </message>
    <message>
        <source>%1 servers are listening on this Mac.</source>
        <translation>%1 servers are listening on this computer.</translation>
    </message>
</context>
<context>
    <name>SitesView</name>
    <message>
        <source>%1 Herd / Valet site on this Mac.</source>
        <translation>%1 Herd / Valet site on this computer.</translation>
    </message>
    <message>
        <source>%1 Herd / Valet sites on this Mac.</source>
        <translation>%1 Herd / Valet sites on this computer.</translation>
    </message>
</context>
</TS>

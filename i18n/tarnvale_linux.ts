<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
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
</TS>

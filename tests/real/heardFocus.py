"""Prints the name of whatever gets the keyboard, each on a line, as a screen reader would read it out."""

import sys

import pyatspi


def on_focus(event):
    if event.detail1:
        print(event.source.name.replace("\n", " "), flush=True)


pyatspi.Registry.registerEventListener(on_focus, "object:state-changed:focused")
print("ready", flush=True)
try:
    pyatspi.Registry.start()
except KeyboardInterrupt:
    sys.exit(0)

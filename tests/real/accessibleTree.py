"""Prints what a screen reader meets of the application, as one line of JSON.

Ends with another status than 0 when something went away while it was read.
"""

import json

import pyatspi


def extents(node):
    try:
        box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    except NotImplementedError:
        return [0, 0, 0, 0]
    return [box.x, box.y, box.width, box.height]


def lines(node):
    if node.getRole() != pyatspi.ROLE_TEXT:
        return ""
    try:
        return node.queryText().getText(0, -1)[-4000:]
    except NotImplementedError:
        return ""


def walk(node):
    states = [pyatspi.stateToString(state) for state in node.getState().getStates()]
    yield {
        "role": node.getRoleName(),
        "name": node.name,
        "text": lines(node),
        "states": sorted(states),
        "box": extents(node),
    }
    for child in node:
        if child is not None:
            yield from walk(child)


nodes = []
for application in pyatspi.Registry.getDesktop(0):
    if application is not None and application.name == "tarnvale":
        nodes += walk(application)
print(json.dumps(nodes))

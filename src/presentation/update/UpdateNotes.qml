// The notes of a version, which scroll. Needs the text: it comes from outside and is shown as it is.
import QtQuick
import Tarnvale.Design

RoundRect {
    id: root

    required property string text

    radius: Theme.radius10
    color: Theme.card
    strokeColor: Theme.cardStroke
    strokeWidth: Theme.stroke

    Flickable {
        id: view
        anchors.fill: parent
        anchors.margins: Theme.stroke
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        contentWidth: width
        contentHeight: notes.height
        activeFocusOnTab: contentHeight > height
        Accessible.role: Accessible.Document
        Accessible.name: qsTr("Release notes")
        Keys.onUpPressed: root.scroll(-Theme.space36)
        Keys.onDownPressed: root.scroll(Theme.space36)
        Keys.onPressed: event => {
            const step = event.key === Qt.Key_PageUp ? -height : (event.key === Qt.Key_PageDown ? height : 0);
            event.accepted = step !== 0;
            root.scroll(step);
        }

        Text {
            id: notes
            width: view.width
            padding: Theme.space14
            text: root.text !== "" ? root.text : qsTr("There are no notes for this version.")
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            lineHeight: 1.15
            color: root.text !== "" ? Theme.ink : Theme.inkTertiary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size125
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
    ListScroller {
        target: view
    }
    FocusRing {
        isShown: view.activeFocus
        radius: root.radius + Theme.space2
    }

    function scroll(step: real): void {
        view.contentY = Math.max(0, Math.min(view.contentHeight - view.height, view.contentY + step));
    }
}

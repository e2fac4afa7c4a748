// An error that rises from the window's lower edge. Needs the message; empty, it is away. Reports `dismissed`.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string message
    property string shown: ""
    readonly property bool isUp: message !== ""

    signal dismissed

    implicitWidth: Math.min(WindowMetrics.toastWidth, Math.ceil(measure.implicitWidth) + mark.width + close.width + 2 * Theme.space14
                            + 2 * Theme.space10)
    implicitHeight: Math.max(words.implicitHeight, close.height) + 2 * Theme.space12
    opacity: isUp ? 1 : 0
    visible: opacity > 0
    transform: Translate {
        y: root.isUp || Theme.reduceMotion ? 0 : Theme.space24

        Behavior on y {
            NumberAnimation {
                duration: Theme.springDuration
                easing.type: Theme.springEasing
            }
        }
    }
    Accessible.role: Accessible.AlertMessage
    Accessible.name: shown
    onMessageChanged: if (message !== "") shown = message
    Component.onCompleted: shown = message

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.fade
        }
    }
    RoundRect { // a soft edge where no shadow can be
        anchors.fill: parent
        anchors.margins: -Theme.space2
        anchors.topMargin: 0
        anchors.bottomMargin: -Theme.space4
        radius: Theme.radius16
        color: Theme.shadow
    }
    RoundRect {
        anchors.fill: parent
        radius: Theme.radius14
        color: Theme.surfaceRaised
        strokeColor: Theme.warningStroke
        strokeWidth: Theme.stroke
    }
    Text {
        id: measure
        visible: false
        text: root.shown
        textFormat: Text.PlainText
        font: words.font
    }
    Symbol {
        id: mark
        anchors.left: parent.left
        anchors.leftMargin: Theme.space14
        anchors.verticalCenter: parent.verticalCenter
        name: "exclamationmark.triangle.fill"
        size: Theme.size15
        color: Theme.warning

        SequentialAnimation on scale {
            running: root.isUp && !Theme.reduceMotion

            NumberAnimation {
                to: 1.25
                duration: Theme.quick
                easing.type: Easing.OutCubic
            }
            NumberAnimation {
                to: 1
                duration: Theme.springDuration
                easing.type: Easing.OutBounce
            }
        }
    }
    Text {
        id: words
        anchors.left: mark.right
        anchors.leftMargin: Theme.space10
        anchors.right: close.left
        anchors.rightMargin: Theme.space10
        anchors.verticalCenter: parent.verticalCenter
        text: root.shown
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        maximumLineCount: 4
        elide: Text.ElideRight
        color: Theme.ink
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size125
        Accessible.ignored: true
    }
    IconButton {
        id: close
        anchors.right: parent.right
        anchors.rightMargin: Theme.space10
        anchors.verticalCenter: parent.verticalCenter
        title: qsTr("Dismiss")
        systemImage: "xmark"
        onActivated: root.dismissed()
    }
}

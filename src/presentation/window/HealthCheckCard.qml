// What the server is asked for to learn how it does. Needs the inspector's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

Card {
    id: root

    required property InspectorController inspector
    readonly property bool canSave: {
        inspector.facts;
        return inspector.canSaveHealthPath(field.text);
    }

    function save(): void {
        if (root.canSave)
            root.inspector.saveHealthPath(field.text);
    }

    Item {
        width: parent.width
        height: name.implicitHeight

        Text {
            id: name
            anchors.left: parent.left
            text: qsTr("Health check")
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size125
            font.weight: Font.Medium
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            anchors.right: parent.right
            anchors.baseline: name.baseline
            text: root.inspector.facts.responseTime
            color: root.inspector.facts.isSlow ? Theme.warning : Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            font.weight: Font.DemiBold

            HoverHandler {
                id: hover
            }
            HoverTip {
                text: qsTr("Time to the first byte of the last check")
                hovered: hover.hovered
            }
        }
    }
    Item {
        width: parent.width
        height: field.height

        Text {
            id: verb
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            text: "GET"
            color: Theme.inkSecondary
            font.family: Theme.monoFamily
            font.pixelSize: Theme.size115
            Accessible.ignored: true
        }
        TextField {
            id: field
            anchors.left: verb.right
            anchors.leftMargin: Theme.space8
            anchors.right: button.left
            anchors.rightMargin: Theme.space8
            height: Theme.controlHeight + Theme.space4
            prompt: "/"
            label: qsTr("Health check path")
            isMono: true
            onAccepted: root.save()
        }
        PushButton {
            id: button
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            isSmall: true
            enabled: root.canSave
            title: qsTr("Save")
            onActivated: root.save()
        }
    }
    Text {
        width: parent.width
        wrapMode: Text.Wrap
        text: qsTr("Checked every 30 seconds while Tarnvale is open. Use a path like /health or /up.")
        color: Theme.inkTertiary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size105
    }

    // The field is the user's while it has the keyboard; a path that was stored comes back to it.
    property string stored: inspector.facts.healthPath
    onStoredChanged: field.text = stored
    Component.onCompleted: field.text = stored
    Connections {
        target: root.inspector
        function onRowIdChanged(): void {
            field.text = root.stored;
        }
    }
}

// Keeps a page once it was shown, so that going back to it costs nothing and finds it as it was left. Needs the page's
// component.
import QtQuick

FocusScope {
    id: root

    required property Component page
    property bool isCurrent: false

    anchors.fill: parent
    visible: isCurrent
    focus: isCurrent

    function keep(): void {
        if (isCurrent)
            loader.active = true;
    }
    onIsCurrentChanged: keep()
    Component.onCompleted: keep()

    Loader {
        id: loader
        anchors.fill: parent
        focus: true
        active: false
        sourceComponent: root.page
    }
}

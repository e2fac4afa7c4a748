// Keeps a page once it was made, so that going back to it costs nothing and finds it as it was left. A page that is wanted
// is made piece by piece while nothing else is to be done; one that is shown, at once. Needs the page's component.
import QtQuick

FocusScope {
    id: root

    required property Component page
    property bool isCurrent: false
    property bool isWanted: false
    readonly property bool isMade: loader.status === Loader.Ready

    anchors.fill: parent
    visible: isCurrent
    focus: isCurrent

    function make(): void {
        if (isCurrent || isWanted)
            loader.active = true;
    }
    onIsCurrentChanged: make()
    onIsWantedChanged: make()
    Component.onCompleted: make()

    Loader {
        id: loader
        anchors.fill: parent
        focus: true
        active: false
        asynchronous: !root.isCurrent
        sourceComponent: root.page
        onLoaded: item.focus = true // one that is made out of sight would have none
    }
}

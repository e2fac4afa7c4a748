// Every part of the design in every state, in the theme's present colours.
import QtQuick
import Tarnvale.Design
import Tarnvale.Gallery

Rectangle {
    id: root

    property bool still: false // for pictures: nothing that keeps moving

    width: 760
    height: content.implicitHeight + 2 * Theme.space24
    color: Theme.surface

    component Heading: Text {
        color: Theme.inkTertiary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size10
        font.weight: Font.DemiBold
        topPadding: Theme.space8
    }
    component Line: Row {
        spacing: Theme.space12
        height: Math.max(implicitHeight, 28)
    }
    component Name: Text {
        color: Theme.ink
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size13
    }

    Column {
        id: content
        x: Theme.space24
        y: Theme.space24
        width: parent.width - 2 * Theme.space24
        spacing: Theme.space6

        Heading { text: "Page header" }
        PageHeader {
            width: parent.width
            title: "Stacks"
            subtitle: "Start a whole project — server, queue, Vite — in one click."

            ArmedButton {
                title: "New from Folder…"
                armedTitle: ""
                isQuiet: false
            }
        }
        Heading { text: "Icon tiles" }
        Flow {
            width: parent.width
            spacing: Theme.space8
            Repeater {
                model: [["logo-laravel", "#FF2D20"], ["logo-postgresql", "#4169E1"], ["logo-mariadb", "#C0765A"],
                    ["logo-mysql", "#4479A1"], ["logo-mongodb", "#47A248"], ["logo-redis", "#FF4438"],
                    ["logo-nginx", "#009639"], ["logo-apache", "#D22128"], ["logo-caddy", "#1F88C0"],
                    ["logo-docker", "#2496ED"], ["logo-php", "#777BB4"], ["logo-bun", "#FBF0DF"],
                    ["logo-deno", "#70FFAF"], ["logo-vite", "#9135FF"], ["logo-nextdotjs", "#8E8E93"],
                    ["logo-nodedotjs", "#5FA04E"], ["logo-python", "#3776AB"], ["logo-rubyonrails", "#D30001"],
                    ["logo-ruby", "#CC342D"], ["logo-flutter", "#02569B"], ["logo-dart", "#0175C2"]]
                IconTile {
                    required property var modelData
                    logo: modelData[0]
                    tint: modelData[1]
                    size: 32
                }
            }
        }
        Flow {
            width: parent.width
            spacing: Theme.space8
            Repeater {
                model: [["terminal.fill", "gray"], ["gearshape.fill", "gray"], ["cylinder.split.1x2.fill", "orange"],
                    ["bolt.horizontal.fill", "red"], ["globe", "teal"], ["iphone", "cyan"],
                    ["cup.and.saucer.fill", "brown"], ["shippingbox.fill", "blue"], ["macwindow", "blue"],
                    ["server.rack", "red"], ["square.stack.3d.up.fill", "purple"], ["play.fill", "green"],
                    ["stop.fill", "gray"], ["wifi", "pink"]]
                IconTile {
                    required property var modelData
                    symbol: modelData[0]
                    tint: Theme.tint(modelData[1])
                    size: 32
                }
            }
            IconTile {
                logo: "logo-postgresql"
                tint: "#4169E1"
                inContainer: true
                size: 32
            }
            IconTile {
                symbol: "terminal.fill"
                inContainer: true
                size: 44
            }
            IconTile {
                appIcon: "image://icon/no-such-icon"
                size: 24
            }
        }
        Heading { text: "Symbols" }
        Flow {
            width: parent.width
            spacing: Theme.space10
            Repeater {
                model: GallerySymbols.names
                Symbol {
                    required property string modelData
                    name: modelData
                    size: Theme.size13
                    color: Theme.ink
                }
            }
        }
        Flow {
            width: parent.width
            spacing: Theme.space8
            Repeater {
                model: GallerySymbols.names
                Symbol {
                    required property string modelData
                    name: modelData
                    size: Theme.size9
                    color: Theme.inkSecondary
                }
            }
        }
        Flow {
            width: parent.width
            spacing: Theme.space12
            Repeater {
                model: ["magnifyingglass", "moon.zzz", "gearshape.fill", "terminal.fill",
                    "exclamationmark.triangle.fill", "xmark.circle.fill", "shippingbox.fill", "square.stack.3d.up.fill",
                    "lock.fill", "bell.badge", "folder.badge.plus", "clock.arrow.circlepath"]
                Symbol {
                    required property string modelData
                    name: modelData
                    size: Theme.size26
                    color: Theme.inkTertiary
                }
            }
        }
        Heading { text: "Health, pulse, pills, key caps" }
        Line {
            Repeater {
                model: ["responding", "serverError", "noResponse", "unknown"]
                Row {
                    id: pair
                    required property string modelData
                    spacing: Theme.space6
                    HealthDot { health: pair.modelData; summary: pair.modelData; size: 9; pulses: !root.still }
                    HealthDot { health: pair.modelData; summary: pair.modelData; size: 8 }
                }
            }
            IconTile {
                logo: "logo-vite"
                tint: "#9135FF"
                size: 32
                HealthDot {
                    anchors.right: parent.right
                    anchors.bottom: parent.bottom
                    anchors.margins: -Theme.space3
                    health: "responding"
                }
            }
            PulsingDot { color: Theme.success; label: "Live" }
            PortPill { text: "5173" }
            PortPill { text: "3000"; prominent: true }
            FurtherPills { numbers: ["3001"]; more: "+3"; moreNumbers: "3002, 3003, 3004" }
            Keycaps { caps: ["Ctrl", "Alt", "P"] }
            Keycaps { caps: ["esc"] }
            Keycaps { caps: ["Super", "Shift", "F12"] }
            CountPill { count: 4 }
            CountPill { count: 128 }
        }
        Heading { text: "Buttons: at rest, checked, disabled, focused" }
        Line {
            IconButton { title: "Open in Browser"; systemImage: "safari" }
            IconButton { title: "Copy URL"; systemImage: "doc.on.doc" }
            IconButton { title: "More actions"; systemImage: "ellipsis" }
            IconButton { title: "Kill process"; systemImage: "xmark" }
            IconButton { title: "Refresh"; systemImage: "arrow.clockwise"; isCheckable: true; isChecked: true }
            IconButton { title: "Refresh"; systemImage: "arrow.clockwise"; enabled: false }
            IconButton { objectName: "focused"; title: "Settings"; systemImage: "gearshape" }
            ArmedButton { title: "Kill"; armedTitle: "Kill"; armed: true }
            ArmedButton { title: "Stop Visible"; armedTitle: "Stop 3?" }
            ArmedButton { title: "Stop Visible"; armedTitle: "Stop 3?"; isQuiet: false }
            ArmedButton { title: "Stop Visible"; armedTitle: "Stop 3?"; armed: true }
            LinkButton { title: "Show system processes"; anchors.verticalCenter: parent.verticalCenter }
        }
        Line {
            spacing: Theme.space4
            Chip { title: "All"; isSelected: true }
            Chip { title: "Agents" }
            Chip { title: "Web"; count: 5 }
            Chip { title: "Services" }
            Chip { title: "Other" }
        }
        Heading { text: "Push buttons, switches, fields" }
        Line {
            PushButton { title: "Open in Browser"; symbol: "safari"; kind: "prominent" }
            PushButton { title: "Copy URL"; symbol: "doc.on.doc" }
            PushButton { title: "Kill Process"; symbol: "xmark.octagon"; kind: "destructive" }
            PushButton { title: "Click again to confirm"; kind: "destructive"; isArmed: true }
            PushButton { title: "Save"; isSmall: true; anchors.verticalCenter: parent.verticalCenter }
            PushButton { title: "Create Stack"; kind: "prominent"; enabled: false }
        }
        Line {
            Switch { title: "Launch at login"; anchors.verticalCenter: parent.verticalCenter }
            Switch { title: "Website previews"; checked: true; anchors.verticalCenter: parent.verticalCenter }
            Switch { title: "Not now"; enabled: false; anchors.verticalCenter: parent.verticalCenter }
            CheckBox { title: "npm run dev"; anchors.verticalCenter: parent.verticalCenter }
            CheckBox { title: "npm start"; checked: true; anchors.verticalCenter: parent.verticalCenter }
            TextField { prompt: "Another command"; width: 180 }
            TextField { prompt: "/"; text: "/health"; isMono: true; width: 120 }
            SegmentedPicker { title: "Group"; options: ["By Process", "By Port"]; current: 0 }
        }
        Line {
            SymbolTile { symbol: "globe"; tint: Theme.green }
            SymbolTile { symbol: "square.stack.3d.up.fill"; tint: Theme.purple; size: 40 }
            Card {
                width: 260
                Name { text: "A card" }
                Name { text: "with two lines" }
            }
        }
        Heading { text: "Search, section, banner" }
        Row {
            spacing: Theme.space16
            SearchField { width: 340; prompt: "Search ports, projects, containers"; count: 12 }
            SearchField { width: 340; prompt: "Search"; text: "vite"; count: 1; countTip: "1 listening" }
        }
        SectionHeader { width: parent.width; title: "Databases & Services"; count: 3 }
        Divider { width: parent.width }
        Banner { width: 400; text: "Could not stop port 5173: the process belongs to another user." }
        Banner { width: 400; text: "A longer one: <b>this</b> is plain text that goes on and on, so that it needs more than the three lines that a banner shows before it is cut at its end, where an ellipsis tells that there would be more to read, and more." }
        Row {
            EmptyState {
                width: 340
                symbol: "moon.zzz"
                title: "No dev servers running"
                actionTitle: "Show system processes"
            }
            EmptyPage {
                width: 360
                symbol: "square.stack.3d.up"
                title: "No stacks yet"
                message: "Pick a project folder and Tarnvale finds its start commands — or right-click a running project and choose “Save as Stack”."
            }
        }
        Heading { text: "Scroll bar" }
        Item {
            width: 240
            height: 90
            ListView {
                id: list
                anchors.fill: parent
                clip: true
                model: 40
                delegate: Name {
                    required property int index
                    text: "Row " + index
                }
            }
            ListScroller { objectName: "scroller"; target: list }
        }
    }
}

import QtQuick 2.15
import QtQuick.Controls 2.15
import "."

/// The rooms of the window: arrows go from one to the next, Ctrl with a digit and Alt with the underlined letter lead there from anywhere.
ListView {
    id: list

    property int room: 0

    signal chosen(int room)

    objectName: "roomList"
    interactive: contentHeight > height
    clip: true
    activeFocusOnTab: true
    currentIndex: room
    keyNavigationEnabled: false
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Rooms")
    Keys.onUpPressed: chosen(Math.max(0, room - 1))
    Keys.onDownPressed: chosen(Math.min(count - 1, room + 1))

    Rectangle {
        z: -1
        width: parent.width
        height: parent.height
        color: Theme.field
    }
    delegate: ItemDelegate {
        id: entry

        readonly property bool current: ListView.isCurrentItem

        objectName: "room" + modelData.name
        width: list.width
        leftPadding: Theme.gap + 4
        text: modelData.title
        font.pixelSize: Theme.plainText
        font.bold: current
        focusPolicy: Qt.NoFocus
        Accessible.role: Accessible.ListItem
        Accessible.name: modelData.name
        Accessible.selectable: true
        Accessible.selected: current
        ToolTip.visible: hovered
        ToolTip.delay: 600
        ToolTip.text: qsTr("%1 (Ctrl+%2)").arg(modelData.hint).arg(index + 1)
        onClicked: list.chosen(index)

        background: Rectangle {
            color: entry.current ? Theme.window : entry.hovered ? Theme.panel : "transparent"
            border.color: entry.current && list.activeFocus ? Theme.accent : "transparent"

            Rectangle {
                width: 4
                height: parent.height
                visible: entry.current
                color: Theme.accent
            }
        }
    }
}

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import "."

ApplicationWindow {
    id: window

    readonly property var rooms: ["Drive", "Car", "Tone", "Focus", "Platform", "Settings", "Microphone", "Timeline"]
    property int room: 0

    objectName: "window"
    title: qsTr("Desk of the audio library")
    width: 1024
    height: 600
    minimumWidth: 1024
    minimumHeight: 600
    visible: true
    color: Theme.window
    palette {
        window: Theme.window
        windowText: Theme.text
        base: Theme.field
        alternateBase: Theme.panel
        text: Theme.text
        button: Theme.panel
        buttonText: Theme.text
        brightText: Theme.bad
        highlight: Theme.accent
        highlightedText: Theme.onAccent
        toolTipBase: Theme.panel
        toolTipText: Theme.text
        light: Theme.line
        mid: Theme.line
        midlight: Theme.line
        dark: Theme.line
        shadow: Theme.line
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        ListView {
            id: roomList

            Layout.fillHeight: true
            Layout.preferredWidth: 120
            model: window.rooms
            currentIndex: window.room
            delegate: ItemDelegate {
                objectName: "room" + modelData
                width: roomList.width
                text: modelData
                highlighted: ListView.isCurrentItem
                onClicked: window.room = index
            }
        }

        StackLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            currentIndex: window.room

            Repeater {
                model: window.rooms

                Loader {
                    id: loader

                    property bool wasShown: false
                    readonly property bool shown: index === window.room

                    onShownChanged: wasShown = wasShown || shown
                    Component.onCompleted: wasShown = shown
                    active: wasShown
                    source: "rooms/" + modelData + "Room.qml"
                    Binding {
                        target: loader.item
                        property: "active"
                        value: loader.shown
                        when: loader.item !== null
                    }
                }
            }
        }
    }
}

import Player 1.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

ApplicationWindow {
    visible: true
    width: 320
    height: 240
    title: "Player"

    ColumnLayout {
        anchors.centerIn: parent
        spacing: 12

        Label {
            Layout.alignment: Qt.AlignHCenter
            text: ["Stopped", "Playing", "Playing, quieter", "Paused"][Player.state]
        }
        RowLayout {
            Button {
                text: "Play"
                onClicked: Player.play()
            }
            Button {
                text: "Stop"
                onClicked: Player.stop()
            }
        }
        RowLayout {
            Button {
                text: "−"
                onClicked: Player.turnVolume(false)
            }
            Label {
                text: Player.volume
            }
            Button {
                text: "+"
                onClicked: Player.turnVolume(true)
            }
        }
    }
}

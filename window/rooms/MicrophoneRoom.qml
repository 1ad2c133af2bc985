import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

Item {
    id: room

    property bool active: false
    readonly property bool isWide: width >= 760

    objectName: "microphoneRoom"

    MicrophoneModel {
        id: microphone

        desk: Desk
        active: room.active
    }

    FocusFlickable {
        id: flickable

        anchors.fill: parent
        anchors.margins: Theme.gap
        contentHeight: grid.height

        GridLayout {
            id: grid

            width: flickable.width - Theme.gap
            columns: room.isWide ? 2 : 1
            columnSpacing: Theme.gap
            rowSpacing: Theme.gap

            ColumnLayout {
                Layout.alignment: Qt.AlignTop
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                spacing: Theme.gap

                MicrophoneGains {
                    Layout.fillWidth: true
                    model: microphone
                }
                MicrophoneStages {
                    Layout.fillWidth: true
                    model: microphone
                }
            }
            ColumnLayout {
                Layout.alignment: Qt.AlignTop
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                spacing: Theme.gap

                MicrophoneCalibration {
                    Layout.fillWidth: true
                    model: microphone
                }
                MicrophoneVoice {
                    Layout.fillWidth: true
                    model: microphone
                }
                MicrophoneTest {
                    Layout.fillWidth: true
                    model: microphone
                }
            }
        }
    }
}

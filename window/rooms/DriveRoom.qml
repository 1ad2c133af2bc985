import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

Item {
    id: room

    property bool active: false
    readonly property bool narrow: width < 820

    objectName: "driveRoom"

    DriveModel {
        id: driveModel

        desk: Desk
        active: room.active
    }

    ScrollView {
        id: scroll

        objectName: "driveScroll"
        anchors.fill: parent
        anchors.leftMargin: Theme.gap
        contentWidth: availableWidth
        clip: true

        GridLayout {
            id: panels

            width: scroll.availableWidth - Theme.gap
            columns: room.narrow ? 2 : 3
            columnSpacing: Theme.gap
            rowSpacing: Theme.gap

            Panel {
                title: qsTr("Heard now, at the driver's ear")
                Layout.columnSpan: panels.columns
                Layout.fillWidth: true
                Layout.topMargin: Theme.gap

                Label {
                    objectName: "heard"
                    text: driveModel.heard === "" ? qsTr("nothing is known yet") : driveModel.heard
                    color: Theme.text
                    font.pixelSize: Theme.largeText
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                    Accessible.name: qsTr("Heard now: %1").arg(text)
                }

                DriveFacts {
                    drive: driveModel
                    Layout.fillWidth: true
                }
            }

            ColumnLayout {
                spacing: Theme.gap
                Layout.alignment: Qt.AlignTop
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.bottomMargin: Theme.gap

                Panel {
                    title: qsTr("Channel and status")
                    Layout.fillWidth: true

                    NumberChooser {
                        objectName: "channel"
                        label: qsTr("Channel")
                        tip: qsTr("The source that plays. Choosing one reports it: it is routed to the main track, and no volume is written.")
                        numbers: driveModel.channels
                        current: driveModel.channel
                        line: driveModel.expectedChannel
                        Layout.fillWidth: true
                        onChosen: driveModel.chooseChannel(number)
                    }

                    NumberChooser {
                        objectName: "status"
                        label: qsTr("Status")
                        tip: qsTr("What sounds now. Choosing one reports it: its volume is applied to its source, once.")
                        numbers: driveModel.statuses
                        current: driveModel.status
                        line: driveModel.expectedStatus
                        Layout.fillWidth: true
                        onChosen: driveModel.chooseStatus(number)
                    }
                }

                Panel {
                    title: qsTr("Mute")
                    Layout.fillWidth: true

                    MuteControls {
                        drive: driveModel
                        Layout.fillWidth: true
                    }
                }

                Panel {
                    title: qsTr("Timers that run")
                    Layout.fillWidth: true

                    TimerRows {
                        timers: driveModel.timers
                        Layout.fillWidth: true
                    }
                }
            }

            Panel {
                title: qsTr("What happens")
                Layout.alignment: Qt.AlignTop
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.bottomMargin: Theme.gap

                SituationButtons {
                    groups: driveModel.situationGroups
                    Layout.fillWidth: true
                    onPerformed: driveModel.perform(name)
                }
            }

            GridLayout {
                columns: room.narrow ? 2 : 1
                columnSpacing: Theme.gap
                rowSpacing: Theme.gap
                Layout.columnSpan: room.narrow ? 2 : 1
                Layout.alignment: Qt.AlignTop
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.bottomMargin: Theme.gap

                Panel {
                    title: qsTr("Volume keys")
                    Layout.alignment: Qt.AlignTop
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1

                    VolumeKnob {
                        drive: driveModel
                        Layout.fillWidth: true
                    }
                }

                Panel {
                    title: qsTr("Volumes")
                    Layout.alignment: Qt.AlignTop
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1

                    VolumeSliders {
                        drive: driveModel
                        Layout.fillWidth: true
                    }
                }
            }
        }
    }
}

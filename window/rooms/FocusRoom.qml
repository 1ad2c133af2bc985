import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

Item {
    id: room

    property bool active: false
    readonly property bool narrow: width < 820

    objectName: "focusRoom"

    FocusModel {
        id: roomModel

        desk: Desk
        active: room.active
    }

    ScrollView {
        id: scroll

        objectName: "focusScroll"
        anchors.fill: parent
        anchors.leftMargin: Theme.gap
        contentWidth: availableWidth
        clip: true

        GridLayout {
            width: scroll.availableWidth - Theme.gap
            columns: room.narrow ? 1 : 2
            columnSpacing: Theme.gap
            rowSpacing: Theme.gap

            Panel {
                title: qsTr("The stack, the holder of focus on top")
                Layout.topMargin: Theme.gap
                Layout.alignment: Qt.AlignTop
                Layout.fillWidth: true
                Layout.preferredWidth: 1

                FocusStackRows {
                    stack: roomModel.stack
                    Layout.fillWidth: true
                }
            }

            Panel {
                title: qsTr("What a request or a release would bring")
                Layout.topMargin: room.narrow ? 0 : Theme.gap
                Layout.alignment: Qt.AlignTop
                Layout.fillWidth: true
                Layout.preferredWidth: 1

                FocusForecast {
                    focusModel: roomModel
                    Layout.fillWidth: true
                }
            }

            Panel {
                title: qsTr("Clients, and what each was told")
                Layout.columnSpan: room.narrow ? 1 : 2
                Layout.bottomMargin: Theme.gap
                Layout.fillWidth: true

                FocusClients {
                    focusModel: roomModel
                    Layout.fillWidth: true
                }
            }
        }
    }
}

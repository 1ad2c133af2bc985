import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

Item {
    id: room

    property bool active: false

    objectName: "platformRoom"

    PlatformModel {
        id: platform

        desk: Desk
        active: room.active
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.gap
        spacing: Theme.gap

        TabBar {
            id: tabs

            objectName: "platformTabs"
            Layout.fillWidth: true

            TabButton {
                objectName: "platformTabFaults"
                text: platform.faults.length === 0 ? qsTr("Operations and faults") : qsTr("Operations and faults (%1)").arg(platform.faults.length)
            }
            TabButton {
                objectName: "platformTabCalls"
                text: qsTr("Calls")
            }
            TabButton {
                objectName: "platformTabState"
                text: platform.problems.length === 0 ? qsTr("State and books") : qsTr("State and books (%1)").arg(platform.problems.length)
            }
        }
        StackLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            currentIndex: tabs.currentIndex

            PlatformFaults { model: platform }
            PlatformCalls { model: platform }
            PlatformState { model: platform }
        }
    }
}

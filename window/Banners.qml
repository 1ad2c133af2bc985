import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import "."

/// What has to be told or decided: what went wrong, a recording that was left behind, the scenario that drives.
ColumnLayout {
    id: banners

    spacing: 0

    Banner {
        objectName: "messageBanner"
        Layout.fillWidth: true
        text: Desk.message
        mark: Theme.bad

        BarButton {
            objectName: "dismissMessageButton"
            text: qsTr("Close")
            Accessible.name: qsTr("Close the message")
            onClicked: Desk.message = ""
        }
    }
    Banner {
        objectName: "leftBehindBanner"
        Layout.fillWidth: true
        text: Desk.leftBehind === "" ? "" : qsTr("A window that ended before its recording was saved left it behind.")
        mark: Theme.warning

        BarButton {
            objectName: "recoverButton"
            text: qsTr("Open it")
            onClicked: Desk.recover()
        }
        BarButton {
            objectName: "dismissLeftBehindButton"
            text: qsTr("Forget it")
            onClicked: Desk.dismissLeftBehind()
        }
    }
    Banner {
        objectName: "scenarioBanner"
        Layout.fillWidth: true
        text: Desk.scenario === "" ? "" : qsTr("The scenario %1 drives the car.").arg(Desk.scenario)

        BarButton {
            objectName: "takeOverButton"
            text: qsTr("Take over")
            hint: qsTr("Ends the scenario where it is; you drive on, and what it did becomes your recording")
            onClicked: Desk.takeOver()
        }
        BarButton {
            objectName: "stopScenarioButton"
            text: qsTr("End it")
            hint: qsTr("Ends the scenario, and begins with a new car")
            onClicked: Desk.startAnew()
        }
    }
}

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import "."
import "carTime.js" as CarTime

/// What the car waits for, what it does, and how long the recording is.
Rectangle {
    id: bar

    property string notice
    property bool recordingShown: false

    signal recordingWanted()
    signal helpWanted()

    objectName: "statusBar"
    implicitHeight: 28
    color: Theme.panel

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.gap
        anchors.rightMargin: Theme.gap
        spacing: Theme.gap

        Label {
            objectName: "activityText"
            text: Desk.replaying ? qsTr("The car does everything once more\u2026")
                                 : Desk.scenario !== "" ? qsTr("Driven by %1").arg(Desk.scenario) : qsTr("Driven by hand")
            font.pixelSize: Theme.smallText
            color: Theme.text
        }
        BusyIndicator {
            objectName: "replayingMark"
            Layout.preferredWidth: 20
            Layout.preferredHeight: 20
            visible: Desk.replaying
            running: visible
            Accessible.name: qsTr("On the way to another moment")
        }
        Label {
            objectName: "nextTimerText"
            text: Desk.nextTimer >= 0 ? qsTr("next timer at %1").arg(CarTime.toText(Desk.nextTimer)) : qsTr("no timer runs")
            font.pixelSize: Theme.smallText
            color: Theme.faint
        }
        Label {
            objectName: "noticeText"
            Layout.fillWidth: true
            text: bar.notice
            horizontalAlignment: Text.AlignRight
            elide: Text.ElideRight
            font.pixelSize: Theme.smallText
            color: Theme.faint
        }
        BarButton {
            objectName: "recordingButton"
            implicitHeight: 24
            font.pixelSize: Theme.smallText
            text: qsTr("Recording: %1 of %2 steps").arg(Desk.recording.doneCount).arg(Desk.recording.count) + (Desk.recording.unsaved ? " *" : "")
            checked: bar.recordingShown
            hint: qsTr("Shows or hides the recording; * marks steps that no file has")
            keys: qsTr("Ctrl+R")
            onClicked: bar.recordingWanted()
        }
        BarButton {
            objectName: "helpButton"
            implicitHeight: 24
            font.pixelSize: Theme.smallText
            text: qsTr("Keys")
            hint: qsTr("The keys of the window, and where its manual is")
            keys: qsTr("F1")
            onClicked: bar.helpWanted()
        }
    }
}

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import "."

/// The lines of the recording with their times, those to come dimmed, and a field for a line that no button makes.
Rectangle {
    id: pane

    function askForLine() {
        field.forceActiveFocus();
    }

    objectName: "recordingPane"
    color: Theme.panel
    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Recording")

    Rectangle {
        width: 1
        height: parent.height
        color: Theme.line
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.gap
        spacing: Theme.gap

        RowLayout {
            Layout.fillWidth: true

            Label {
                text: qsTr("Recording")
                font.pixelSize: Theme.plainText
                font.bold: true
                color: Theme.text
            }
            Label {
                objectName: "savedMark"
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignRight
                text: Desk.recording.count === 0 ? qsTr("empty") : Desk.recording.unsaved ? qsTr("not saved") : qsTr("saved")
                font.pixelSize: Theme.smallText
                color: Desk.recording.unsaved ? Theme.warning : Theme.faint
            }
        }

        ListView {
            id: lines

            objectName: "recordingLines"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            model: Desk.recording
            reuseItems: true
            currentIndex: Desk.recording.doneCount - 1
            highlightMoveDuration: 0
            keyNavigationEnabled: false
            boundsBehavior: Flickable.StopAtBounds
            activeFocusOnTab: true
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Steps")
            ScrollBar.vertical: ScrollBar { }
            // The last step done stays in sight, unless somebody reads elsewhere.
            onCurrentIndexChanged: {
                if (!activeFocus && !moving)
                    positionViewAtIndex(Math.max(0, currentIndex), ListView.Contain);
            }
            delegate: RecordedStep { width: lines.width }

            Label {
                anchors.fill: parent
                visible: lines.count === 0
                text: qsTr("Whatever is done to the car is written down here, and can be played, saved and gone back to.")
                wrapMode: Text.Wrap
                font.pixelSize: Theme.smallText
                color: Theme.faint
            }
        }

        LineField {
            id: field

            Layout.fillWidth: true
        }
    }
}

import QtQuick 2.15
import QtQuick.Controls 2.15
import QzAudio.Desk 1.0
import "."

/// A click adds an expectation to the recording: that what stands beside the button is as it is now.
ToolButton {
    id: button

    /// A line of a scenario: "expect(AudioPolicy.status).toBe(1);"
    required property string line

    implicitWidth: 24
    implicitHeight: 24
    padding: 0
    text: "\u2713"
    font.pixelSize: Theme.plainText
    enabled: line.length > 0
    focusPolicy: Qt.StrongFocus
    Accessible.name: qsTr("Expect this: %1").arg(line)
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    ToolTip.visible: hovered || visualFocus
    ToolTip.delay: 600
    ToolTip.text: qsTr("Expect this from now on: adds %1 to the recording").arg(line)
    onClicked: Desk.perform(line)
}

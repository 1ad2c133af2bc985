import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."

/// Timers that run, each with the time that it has left.
ColumnLayout {
    id: timerRows

    /// The model TimerList.
    property var timers

    spacing: Theme.smallGap

    Label {
        text: qsTr("none")
        visible: timerRows.timers.count === 0
        color: Theme.faint
        font.pixelSize: Theme.smallText
    }

    Repeater {
        model: timerRows.timers

        ColumnLayout {
            spacing: 0
            Layout.fillWidth: true

            RowLayout {
                spacing: Theme.gap
                Layout.fillWidth: true

                Label {
                    text: model.purpose
                    color: Theme.text
                    font.pixelSize: Theme.smallText
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                }

                Label {
                    objectName: "timerLeft"
                    text: qsTr("%1 s").arg((model.left / 1000).toFixed(2))
                    color: Theme.text
                    font.family: Theme.numbers
                    font.pixelSize: Theme.smallText
                    Layout.alignment: Qt.AlignTop
                }
            }

            ProgressBar {
                value: model.share
                Layout.preferredHeight: 14
                Layout.fillWidth: true
                Accessible.name: qsTr("Time left: %1").arg(model.purpose)
            }
        }
    }
}

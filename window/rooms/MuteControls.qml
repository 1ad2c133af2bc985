import QtQuick 2.15
import QtQml 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."

/// Mute, plain and for a time, and what is left of that.
ColumnLayout {
    id: muteControls

    /// The DriveModel.
    property var drive
    readonly property bool timed: drive.muteLeft >= 0

    spacing: Theme.smallGap

    RowLayout {
        spacing: Theme.gap
        Layout.fillWidth: true

        Switch {
            id: muteSwitch

            objectName: "mute"
            text: qsTr("Muted")
            font.pixelSize: Theme.plainText
            Layout.fillWidth: true
            ToolTip.text: qsTr("Mutes or unmutes at once. The timer of a timed mute goes on running.")
            ToolTip.visible: hovered
            ToolTip.delay: 500
            Keys.onReturnPressed: {
                toggle();
                toggled();
            }
            onToggled: {
                muteControls.drive.setMuted(checked);
                checked = muteControls.drive.muted;
            }

            Binding {
                target: muteSwitch
                property: "checked"
                value: muteControls.drive.muted
                restoreMode: Binding.RestoreNone
            }
        }

        Button {
            objectName: "attenuation"
            text: qsTr("Mute key")
            font.pixelSize: Theme.plainText
            ToolTip.text: qsTr("Mutes when audible, unmutes when muted.")
            ToolTip.visible: hovered
            ToolTip.delay: 500
            Keys.onReturnPressed: clicked()
            onClicked: muteControls.drive.toggleMute()
        }

        ExpectButton {
            objectName: "muteExpect"
            line: "expect(AudioPolicy.muted).toBe(" + muteControls.drive.muted + ");"
        }
    }

    RowLayout {
        spacing: Theme.gap
        Layout.fillWidth: true

        Button {
            objectName: "timedMute"
            text: qsTr("Mute for")
            font.pixelSize: Theme.plainText
            Keys.onReturnPressed: clicked()
            onClicked: muteControls.drive.muteFor(duration.value)
        }

        SpinBox {
            id: duration

            objectName: "timedMuteDuration"
            from: 50
            to: 60000
            stepSize: 50
            value: 2000
            editable: true
            font.pixelSize: Theme.plainText
            Layout.fillWidth: true
            Layout.minimumWidth: 90
            Accessible.name: qsTr("Milliseconds of the timed mute")
        }

        Label {
            text: qsTr("ms")
            color: Theme.text
            font.pixelSize: Theme.plainText
        }
    }

    ProgressBar {
        objectName: "muteShare"
        value: muteControls.drive.muteShare
        Layout.preferredHeight: 14
        Layout.fillWidth: true
        Accessible.name: qsTr("Time left of the timed mute")
    }

    Label {
        objectName: "muteLeft"
        text: {
            if (!muteControls.timed)
                return qsTr("No timed mute runs.");
            const left = (muteControls.drive.muteLeft / 1000).toFixed(2);
            return muteControls.drive.muted ? qsTr("%1 s left").arg(left) : qsTr("%1 s left of a timer that unmutes whatever is muted then").arg(left);
        }
        color: muteControls.timed ? Theme.text : Theme.faint
        font.pixelSize: Theme.smallText
        wrapMode: Text.Wrap
        Layout.fillWidth: true
    }
}

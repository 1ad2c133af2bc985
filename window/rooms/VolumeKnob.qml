import QtQuick 2.15
import QtQml 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."

/// The volume keys as a knob: the mouse, its wheel and the arrow keys make steps of them.
ColumnLayout {
    id: volumeKnob

    /// The DriveModel.
    property var drive
    readonly property bool works: drive.keyVolume >= 0

    spacing: Theme.smallGap

    RowLayout {
        spacing: Theme.gap
        Layout.fillWidth: true

        Button {
            objectName: "volumeDown"
            text: "\u2212"
            font.pixelSize: Theme.largeText
            Layout.preferredWidth: 36
            Accessible.name: qsTr("One step quieter")
            Keys.onReturnPressed: clicked()
            onClicked: volumeKnob.drive.step(false)
        }

        Dial {
            id: dial

            objectName: "volumeKnob"
            from: 0
            to: 25
            stepSize: 1
            snapMode: Dial.SnapAlways
            enabled: volumeKnob.works
            Layout.preferredWidth: 96
            Layout.preferredHeight: 96
            Accessible.name: qsTr("Volume keys")
            ToolTip.text: qsTr("Turn it with the mouse, the wheel or the arrow keys: each step is one of the volume keys.")
            ToolTip.visible: hovered && !pressed
            ToolTip.delay: 800
            onMoved: volumeKnob.drive.turnTo(Math.round(value))

            Binding {
                target: dial
                property: "value"
                value: Math.max(0, volumeKnob.drive.keyVolume)
                when: !dial.pressed
                restoreMode: Binding.RestoreNone
            }

            WheelHandler {
                onWheel: volumeKnob.drive.step(event.angleDelta.y > 0)
            }
        }

        Button {
            objectName: "volumeUp"
            text: "+"
            font.pixelSize: Theme.largeText
            Layout.preferredWidth: 36
            Accessible.name: qsTr("One step louder")
            Keys.onReturnPressed: clicked()
            onClicked: volumeKnob.drive.step(true)
        }

        ColumnLayout {
            spacing: 0
            Layout.fillWidth: true

            Label {
                objectName: "keyVolume"
                text: volumeKnob.works ? volumeKnob.drive.keyVolume : "\u2013"
                color: Theme.text
                font.family: Theme.numbers
                font.pixelSize: 2 * Theme.plainText
            }

            Label {
                objectName: "keyType"
                text: {
                    const type = volumeKnob.drive.volumeTypes[volumeKnob.drive.keyType];
                    return type ? qsTr("of %1").arg(type.meaning) : qsTr("they work on nothing");
                }
                color: Theme.text
                font.pixelSize: Theme.plainText
                wrapMode: Text.Wrap
                Layout.fillWidth: true
                Layout.minimumWidth: 60
            }
        }
    }

    Label {
        objectName: "keyReason"
        text: volumeKnob.drive.keyReason
        color: Theme.faint
        font.pixelSize: Theme.smallText
        wrapMode: Text.Wrap
        Layout.fillWidth: true
    }
}

import QtQuick 2.15
import QtQml 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."

/// The six volumes. A slider sets one when it is let go, and a key at once.
GridLayout {
    id: volumeSliders

    /// The DriveModel.
    property var drive

    columns: 4
    columnSpacing: Theme.gap
    rowSpacing: 0

    Repeater {
        model: volumeSliders.drive.volumeTypes

        Label {
            text: modelData.meaning
            color: volumeSliders.drive.keyType === index ? Theme.accent : Theme.text
            font.pixelSize: Theme.plainText
            font.bold: volumeSliders.drive.keyType === index
            Layout.row: index
            Layout.column: 0
        }
    }

    Repeater {
        model: volumeSliders.drive.volumeTypes

        Slider {
            id: slider

            readonly property bool known: index < volumeSliders.drive.volumes.length
            property bool touched: false

            function apply() {
                if (touched)
                    volumeSliders.drive.setVolume(index, Math.round(value));
                touched = false;
            }

            objectName: "volume" + index
            from: 0
            to: 25
            stepSize: 1
            snapMode: Slider.SnapAlways
            enabled: known
            padding: 2
            Layout.row: index
            Layout.column: 1
            Layout.fillWidth: true
            Layout.minimumWidth: 60
            Accessible.name: qsTr("Volume of %1").arg(modelData.meaning)
            ToolTip.text: qsTr("Sets the volume of all channels of this type, and saves it.")
            ToolTip.visible: hovered && !pressed
            ToolTip.delay: 800
            onMoved: {
                touched = true;
                if (!pressed)
                    apply();
            }
            onPressedChanged: {
                if (!pressed)
                    apply();
            }

            Binding {
                target: slider
                property: "value"
                value: slider.known ? volumeSliders.drive.volumes[index] : 0
                when: !slider.pressed && !slider.touched
                restoreMode: Binding.RestoreNone
            }
        }
    }

    Repeater {
        model: volumeSliders.drive.volumeTypes

        Label {
            objectName: "volumeText" + index
            text: index < volumeSliders.drive.volumes.length ? volumeSliders.drive.volumes[index] : "\u2013"
            color: Theme.text
            font.family: Theme.numbers
            font.pixelSize: Theme.plainText
            horizontalAlignment: Text.AlignRight
            Layout.row: index
            Layout.column: 2
            Layout.minimumWidth: 20
        }
    }

    Repeater {
        model: volumeSliders.drive.volumeTypes

        ExpectButton {
            required property int index

            objectName: "volumeExpect" + index
            line: index < volumeSliders.drive.volumes.length ? volumeSliders.drive.expectedVolume(index) : ""
            Layout.row: index
            Layout.column: 3
        }
    }
}

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

/// Damage to the file, and what a start makes of it.
ColumnLayout {
    id: damage

    required property SettingsModel model

    function moveTo() {
        slider.value = model.cut < 0 ? model.size : model.cut;
        box.value = slider.value;
    }

    spacing: Theme.gap

    Panel {
        title: qsTr("A start on this file")
        Layout.fillWidth: true

        Label {
            objectName: "settingsPower"
            Layout.fillWidth: true
            text: damage.model.on ? qsTr("The unit is on.") : qsTr("The unit is off: the file stays as it is until a start.")
            wrapMode: Text.Wrap
            color: damage.model.on ? Theme.faint : Theme.warning
            font.pixelSize: Theme.smallText
        }
        Flow {
            Layout.fillWidth: true
            spacing: Theme.gap

            Button {
                objectName: "settingsStart"
                text: damage.model.on ? qsTr("Switch off and on") : qsTr("Switch on")
                onClicked: damage.model.start()
            }
            Button {
                objectName: "settingsSwitchOff"
                text: qsTr("Switch off")
                enabled: damage.model.on
                onClicked: damage.model.switchOff()
            }
        }
        Label {
            objectName: "settingsStartChanges"
            Layout.fillWidth: true
            visible: damage.model.startChanges.length > 0
            text: qsTr("Since this start the file has other values:\n%1").arg(damage.model.startChanges.join("\n"))
            textFormat: Text.PlainText
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            font.pixelSize: Theme.smallText
        }
    }
    Panel {
        title: qsTr("Cut the file off")
        Layout.fillWidth: true

        RowLayout {
            Layout.fillWidth: true

            Slider {
                id: slider

                objectName: "settingsCutSlider"
                Layout.fillWidth: true
                from: 0
                to: Math.max(1, damage.model.size)
                stepSize: 1
                value: damage.model.cut < 0 ? damage.model.size : damage.model.cut
                Accessible.name: qsTr("Byte from which on the file is cut off")
                onMoved: damage.model.cut = value
            }
            SpinBox {
                id: box

                objectName: "settingsCutByte"
                Layout.preferredWidth: 110
                from: 0
                to: damage.model.size
                editable: true
                value: damage.model.cut < 0 ? damage.model.size : damage.model.cut
                Accessible.name: qsTr("Bytes that are left of the file")
                onValueModified: damage.model.cut = value
            }
        }
        Label {
            objectName: "settingsCutPreview"
            Layout.fillWidth: true
            text: damage.model.cut < 0 ? qsTr("Move the slider: text and table then show what would be left.")
                : damage.model.problems === 0 ? qsTr("%1 of %2 bytes would be left, and all that is stored counts.").arg(damage.model.cut).arg(damage.model.size)
                : qsTr("%1 of %2 bytes would be left; %3 settings would not count as stored.").arg(damage.model.cut).arg(damage.model.size).arg(damage.model.problems)
            wrapMode: Text.Wrap
            color: damage.model.cut >= 0 && damage.model.problems > 0 ? Theme.bad : Theme.faint
            font.pixelSize: Theme.smallText
        }
        Flow {
            Layout.fillWidth: true
            spacing: Theme.gap

            Button {
                objectName: "settingsCutOff"
                text: qsTr("Cut it off")
                enabled: damage.model.cut >= 0
                onClicked: damage.model.cutOff()
            }
            Button {
                objectName: "settingsCutCancel"
                text: qsTr("Leave it whole")
                enabled: damage.model.cut >= 0
                onClicked: damage.model.cut = -1
            }
        }
        Connections {
            target: damage.model
            function onCutChanged() { damage.moveTo(); }
            function onFileChanged() { damage.moveTo(); }
        }
    }
    Panel {
        title: qsTr("Take the power in the middle of a save")
        Layout.fillWidth: true

        Label {
            Layout.fillWidth: true
            text: qsTr("A unit on this flash does a line, and is killed when its save is to write that byte. What it leaves is real.")
            wrapMode: Text.Wrap
            color: Theme.faint
            font.pixelSize: Theme.smallText
        }
        RowLayout {
            Layout.fillWidth: true

            Label {
                text: qsTr("Byte")
            }
            SpinBox {
                id: powerByte

                objectName: "settingsPowerByte"
                Layout.preferredWidth: 110
                from: 0
                to: 1000000
                value: 30
                editable: true
                Accessible.name: qsTr("Byte of the save at which the power goes")
                ToolTip.visible: hovered
                ToolTip.delay: 600
                ToolTip.text: qsTr("At 0 nothing is written yet. Beyond the file's size the save is done when the power goes.")
            }
        }
        TextField {
            id: powerLine

            objectName: "settingsPowerLine"
            Layout.fillWidth: true
            text: "AudioPolicy.setVolume(0, 7, true)"
            selectByMouse: true
            font.family: Theme.numbers
            font.pixelSize: Theme.smallText
            Accessible.name: qsTr("Line that saves a setting")
            onAccepted: cutPower.clicked()
        }
        Button {
            id: cutPower

            objectName: "settingsCutPower"
            text: qsTr("Take the power")
            enabled: powerLine.text.trim() !== ""
            onClicked: damage.model.cutPower(powerByte.value, powerLine.text)
        }
    }
}

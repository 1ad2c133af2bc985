import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

/// Input volume, gain and choice of the microphone.
Panel {
    id: gains

    required property MicrophoneModel model

    title: qsTr("Microphone")

    RowLayout {
        Label {
            Layout.preferredWidth: 110
            text: qsTr("In use")
        }
        ComboBox {
            id: choice

            objectName: "microphoneChoice"
            model: [qsTr("Original"), qsTr("Arm")]
            currentIndex: gains.model.swapped ? 1 : 0
            Accessible.name: qsTr("Microphone in use")
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: qsTr("The arm microphone is the other input: left and right are swapped on the platform. Each has a gain and a delay of its own.")
            onActivated: {
                Desk.perform("AudioPolicy.setMicLeftRightSwitch(" + (index === 0) + ");");
                currentIndex = Qt.binding(() => gains.model.swapped ? 1 : 0);
            }
        }
        Label {
            Layout.fillWidth: true
            text: gains.model.swapped ? qsTr("inputs swapped") : qsTr("inputs not swapped")
            color: Theme.faint
            font.pixelSize: Theme.smallText
            wrapMode: Text.Wrap
        }
        ExpectButton {
            objectName: "microphoneExpectSwapped"
            line: "expect(Platform.isMicLeftRightSwapped()).toBe(" + gains.model.swapped + ");"
        }
    }
    RowLayout {
        Label {
            Layout.preferredWidth: 110
            text: qsTr("Input volume")
        }
        Slider {
            id: volume

            objectName: "microphoneVolume"
            Layout.fillWidth: true
            from: 0
            to: 91
            stepSize: 1
            value: gains.model.volume
            Accessible.name: qsTr("Input volume, 0 to 91")
            onMoved: if (!pressed) send()
            onPressedChanged: if (!pressed) send()

            function send() {
                if (Math.round(value) !== gains.model.volume)
                    Desk.perform("AudioPolicy.setMicInputValue(" + Math.round(value) + ");");
            }
            Connections {
                target: gains.model
                function onChanged() {
                    if (!volume.pressed)
                        volume.value = gains.model.volume;
                }
            }
        }
        Label {
            Layout.preferredWidth: 30
            horizontalAlignment: Text.AlignRight
            text: Math.round(volume.value)
            font.family: Theme.numbers
        }
        ExpectButton {
            objectName: "microphoneExpectVolume"
            line: "expect(Platform.micVolume()).toBe(" + gains.model.volume + ");"
        }
    }
    RowLayout {
        Label {
            Layout.preferredWidth: 110
            text: qsTr("Gain left, right")
        }
        SpinBox {
            id: left

            objectName: "microphoneGainLeft"
            Layout.preferredWidth: 110
            from: -40
            to: 60
            editable: true
            value: Math.round(gains.model.analog[0])
            Accessible.name: qsTr("Gain of the left input in dB")
        }
        SpinBox {
            id: right

            objectName: "microphoneGainRight"
            Layout.preferredWidth: 110
            from: -40
            to: 60
            editable: true
            value: Math.round(gains.model.analog[1])
            Accessible.name: qsTr("Gain of the right input in dB")
        }
        Label {
            text: qsTr("dB")
        }
    }
    Flow {
        Layout.fillWidth: true
        spacing: Theme.gap

        Button {
            objectName: "microphoneSetGain"
            text: qsTr("Set and store")
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: qsTr("Sets both, stores the left one for the microphone in use. The stages stay until the next start, or until they are set.")
            onClicked: Desk.perform("AudioPolicy.setMicAnalogGain(" + left.value + ", " + right.value + ");")
        }
        Button {
            objectName: "microphoneSetStages"
            text: qsTr("Set its stages")
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: qsTr("What a start makes of the left gain: %1").arg(gains.model.splitText(left.value))
            onClicked: Desk.perform(gains.model.stagesLine(left.value))
        }
    }
    RowLayout {
        Label {
            Layout.fillWidth: true
            objectName: "microphoneApplied"
            text: qsTr("On the platform: gain %1 and %2 dB, stage %3 and %4 dB, programmable rest %5 and %6 dB")
                .arg(gains.model.analog[0]).arg(gains.model.analog[1]).arg(gains.model.op[0]).arg(gains.model.op[1]).arg(gains.model.pga[0]).arg(gains.model.pga[1])
            wrapMode: Text.Wrap
            font.pixelSize: Theme.smallText
        }
        ExpectButton {
            objectName: "microphoneExpectGain"
            line: "expect(Platform.micAnalogGain()).toEqual([" + gains.model.analog.join(", ") + "]);"
        }
    }
}

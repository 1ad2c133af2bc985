import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

/// The platform's calibration of the microphone's gain.
Panel {
    id: calibration

    required property MicrophoneModel model
    readonly property var states: [qsTr("never started"), qsTr("running"), qsTr("applied")]

    title: qsTr("Calibration of the gain")

    RowLayout {
        Label {
            objectName: "microphoneCalibration"
            Layout.fillWidth: true
            text: qsTr("It is %1; it finds %2 and %3 dB.").arg(calibration.states[calibration.model.calibration])
                .arg(calibration.model.calibrationGains[0]).arg(calibration.model.calibrationGains[1])
            wrapMode: Text.Wrap
            color: calibration.model.calibration === 1 ? Theme.warning : Theme.text
        }
        ExpectButton {
            objectName: "microphoneExpectCalibration"
            line: "expect(Platform.calibration()).toBe(" + calibration.model.calibration + ");"
        }
    }
    Flow {
        Layout.fillWidth: true
        spacing: Theme.gap

        Button {
            objectName: "microphoneStartCalibration"
            text: qsTr("Start")
            Accessible.name: qsTr("Start the calibration")
            onClicked: Desk.perform("AudioPolicy.startMicGainCalibration();")
        }
        Button {
            objectName: "microphoneReadCalibration"
            text: qsTr("Read")
            Accessible.name: qsTr("Read what the calibration found")
            onClicked: Desk.perform("AudioPolicy.getMicCalibrationGain();")
        }
        Button {
            objectName: "microphoneTakeCalibration"
            text: qsTr("Take over")
            Accessible.name: qsTr("Take over what the calibration found")
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: qsTr("The platform uses what it found from now on. The stored gain stays: the next start brings it back.")
            onClicked: Desk.perform("AudioPolicy.setMicGainCalibration();")
        }
    }
    RowLayout {
        Label {
            text: qsTr("It is to find")
        }
        SpinBox {
            id: first

            objectName: "microphoneFindsFirst"
            Layout.preferredWidth: 100
            from: -100
            to: 100
            editable: true
            value: calibration.model.calibrationGains[0]
            Accessible.name: qsTr("First gain that the calibration is to find")
        }
        SpinBox {
            id: second

            objectName: "microphoneFindsSecond"
            Layout.preferredWidth: 100
            from: -100
            to: 100
            editable: true
            value: calibration.model.calibrationGains[1]
            Accessible.name: qsTr("Second gain that the calibration is to find")
        }
        Button {
            objectName: "microphoneSetFinds"
            text: qsTr("Set")
            Accessible.name: qsTr("Set what the calibration is to find")
            onClicked: Desk.perform("Platform.setCalibrationGains(" + first.value + ", " + second.value + ");")
        }
    }
    RowLayout {
        Label {
            text: qsTr("Each call takes")
        }
        SpinBox {
            id: duration

            objectName: "microphoneCallDuration"
            Layout.preferredWidth: 120
            from: 0
            to: 10000
            stepSize: 100
            editable: true
            value: calibration.model.callDuration
            Accessible.name: qsTr("Milliseconds that each call on the platform takes")
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: qsTr("A platform that takes its time: the car's clock runs on in each call, and timers are late behind it")
            onValueModified: Desk.perform("Platform.setCallDuration(" + value + ");")
            Connections {
                target: calibration.model
                function onChanged() { duration.value = calibration.model.callDuration; }
            }
        }
        Label {
            text: qsTr("ms")
        }
    }
}

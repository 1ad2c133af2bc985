import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

/// Echo cancelling and the delays of a call.
Panel {
    id: voice

    required property MicrophoneModel model

    title: qsTr("Voice")

    RowLayout {
        Label {
            Layout.preferredWidth: 130
            text: qsTr("Echo cancelling")
        }
        ComboBox {
            objectName: "microphoneAecQuality"
            model: [qsTr("0, lowest"), qsTr("1"), qsTr("2, highest")]
            currentIndex: voice.model.aecQuality
            Accessible.name: qsTr("Quality of echo cancelling")
            onActivated: {
                Desk.perform("AudioControl.setAECQuality(" + index + ");");
                currentIndex = Qt.binding(() => voice.model.aecQuality);
            }
        }
        Item { Layout.fillWidth: true }
        ExpectButton {
            objectName: "microphoneExpectAec"
            line: "expect(Platform.aecQuality()).toBe(" + voice.model.aecQuality + ");"
        }
    }
    RowLayout {
        Label {
            Layout.preferredWidth: 130
            text: qsTr("Hands-free delay")
        }
        SpinBox {
            id: delay

            objectName: "microphoneHandsfreeDelay"
            Layout.preferredWidth: 120
            from: -32768
            to: 32767
            editable: true
            value: voice.model.handsfreeDelay
            Accessible.name: qsTr("Hands-free delay in the platform's unit")
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: qsTr("In the platform's unit; stored for the microphone in use")
            onValueModified: Desk.perform("AudioPolicy.setHandsfreeDelay(" + value + ");")
        }
        Item { Layout.fillWidth: true }
        ExpectButton {
            objectName: "microphoneExpectHandsfree"
            line: "expect(Platform.handsfreeDelay()).toBe(" + voice.model.handsfreeDelay + ");"
        }
    }
    RowLayout {
        Label {
            Layout.preferredWidth: 130
            text: qsTr("Downlink delay")
        }
        SpinBox {
            id: found

            objectName: "microphoneDownlinkDelay"
            Layout.preferredWidth: 120
            from: -32768
            to: 32767
            editable: true
            value: voice.model.downlinkDelay
            Accessible.name: qsTr("Downlink delay that the estimation is to find")
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: qsTr("What the platform's estimation is to find, in its unit")
            onValueModified: Desk.perform("Platform.setDownlinkDelay(" + value + ");")
        }
        Label {
            Layout.fillWidth: true
            text: voice.model.downlinkStarted ? qsTr("estimation started") : qsTr("not estimated yet")
            color: Theme.faint
            font.pixelSize: Theme.smallText
            wrapMode: Text.Wrap
        }
    }
    Flow {
        Layout.fillWidth: true
        spacing: Theme.gap

        Button {
            objectName: "microphoneStartEstimation"
            text: qsTr("Start the estimation")
            onClicked: Desk.perform("AudioPolicy.setDownlinkDelayEstimation();")
        }
        Button {
            objectName: "microphoneReadEstimation"
            text: qsTr("Read it")
            Accessible.name: qsTr("Read the estimated downlink delay")
            onClicked: Desk.perform("AudioPolicy.getDownlinkDelayEstimation();")
        }
    }
    Connections {
        target: voice.model
        function onChanged() {
            delay.value = voice.model.handsfreeDelay;
            found.value = voice.model.downlinkDelay;
        }
    }
}

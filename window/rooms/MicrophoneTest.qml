import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

/// What the microphone's self-test reads.
Panel {
    id: test

    required property MicrophoneModel model

    title: qsTr("Self-test")

    TextField {
        id: values

        readonly property var numbers: text.split(",").map(part => part.trim())
        readonly property bool isValid: numbers.length === 8 && numbers.every(part => /^\d{1,5}$/.test(part) && Number(part) <= 65535)

        objectName: "microphoneTestValues"
        Layout.fillWidth: true
        text: test.model.test.join(", ")
        selectByMouse: true
        font.family: Theme.numbers
        font.pixelSize: Theme.smallText
        color: isValid || text === "" ? Theme.text : Theme.bad
        Accessible.name: qsTr("Eight values that the self-test reads, 0 to 65535")
        onAccepted: set.clicked()
        Connections {
            target: test.model
            function onChanged() {
                if (!values.activeFocus)
                    values.text = test.model.test.join(", ");
            }
        }
    }
    Flow {
        Layout.fillWidth: true
        spacing: Theme.gap

        Button {
            id: set

            objectName: "microphoneSetTest"
            text: qsTr("Set")
            enabled: values.isValid
            Accessible.name: qsTr("Set what the self-test reads")
            onClicked: Desk.perform("Platform.setMicrophoneTest([" + values.numbers.map(Number).join(", ") + "]);")
        }
        Button {
            objectName: "microphoneReadTest"
            text: qsTr("Read by the library")
            onClicked: Desk.perform("AudioControl.getMicrophoneTest();")
        }
        ExpectButton {
            objectName: "microphoneExpectTest"
            line: test.model.test.length === 8 ? "expect(AudioControl.getMicrophoneTest()).toEqual([" + test.model.test.join(", ") + "]);" : ""
        }
    }
    Label {
        Layout.fillWidth: true
        visible: !values.isValid && values.text !== ""
        text: qsTr("Eight numbers from 0 to 65535, with commas between.")
        wrapMode: Text.Wrap
        color: Theme.bad
        font.pixelSize: Theme.smallText
    }
}

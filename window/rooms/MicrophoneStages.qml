import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

/// The amplifier's stages, and which gains they serve.
Panel {
    id: stages

    required property MicrophoneModel model

    title: qsTr("Stages of the amplifier")

    Label {
        Layout.fillWidth: true
        text: qsTr("A gain is a stage and a programmable rest in whole dB, at most 6 dB above the stage while a higher one is left.")
        wrapMode: Text.Wrap
        color: Theme.faint
        font.pixelSize: Theme.smallText
    }
    ColumnLayout {
        Layout.fillWidth: true
        spacing: 0

        Repeater {
            model: stages.model.stages

            Rectangle {
                objectName: "microphoneStage" + index
                Layout.fillWidth: true
                implicitHeight: 22
                color: modelData.current ? Theme.accent : "transparent"
                radius: 3
                Accessible.role: Accessible.ListItem
                Accessible.name: qsTr("Stage %1 dB for gains %2").arg(modelData.stage).arg(modelData.gains) + (modelData.current ? qsTr(", in use") : "")

                RowLayout {
                    anchors.fill: parent
                    anchors.leftMargin: Theme.gap
                    anchors.rightMargin: Theme.gap

                    Label {
                        Layout.preferredWidth: 80
                        horizontalAlignment: Text.AlignRight
                        text: qsTr("%1 dB").arg(modelData.stage)
                        color: modelData.current ? Theme.accentText : Theme.text
                        font.family: Theme.numbers
                        font.pixelSize: Theme.smallText
                    }
                    Label {
                        Layout.fillWidth: true
                        text: qsTr("gains %1 dB").arg(modelData.gains)
                        color: modelData.current ? Theme.accentText : Theme.faint
                        font.pixelSize: Theme.smallText
                    }
                    Label {
                        visible: modelData.current
                        text: qsTr("in use")
                        color: Theme.accentText
                        font.pixelSize: Theme.smallText
                    }
                }
            }
        }
    }
    Label {
        objectName: "microphoneStagesDiffer"
        Layout.fillWidth: true
        visible: !stages.model.stagesFit
        text: qsTr("The stages are not those of the gain %1 dB: a start would set %2.").arg(stages.model.analog[0]).arg(stages.model.splitText(stages.model.analog[0]))
        wrapMode: Text.Wrap
        color: Theme.warning
        font.pixelSize: Theme.smallText
    }
    RowLayout {
        Label {
            Layout.fillWidth: true
            text: qsTr("Expect these stages")
            color: Theme.faint
            font.pixelSize: Theme.smallText
        }
        ExpectButton {
            objectName: "microphoneExpectStages"
            line: "expect(Platform.micOpGain()).toEqual([" + stages.model.op.join(", ") + "]);"
        }
    }
}

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."

/// Who would be told what by the next request or release. Nothing of it happens.
ColumnLayout {
    id: focusForecast

    /// The FocusModel.
    property var focusModel

    spacing: Theme.smallGap

    GridLayout {
        columns: 2
        columnSpacing: Theme.gap
        rowSpacing: Theme.smallGap
        Layout.fillWidth: true

        Label {
            text: qsTr("If")
            color: Theme.text
            font.pixelSize: Theme.plainText
        }

        ComboBox {
            id: client

            objectName: "nextClient"
            editable: true
            model: focusForecast.focusModel.clientIds
            font.pixelSize: Theme.plainText
            Layout.fillWidth: true
            Layout.minimumWidth: 100
            Accessible.name: qsTr("The client that would request")
            ToolTip.text: qsTr("A client that there is, or the id of a new one.")
            ToolTip.visible: hovered && !down
            ToolTip.delay: 500
            onEditTextChanged: focusForecast.focusModel.nextClient = editText
        }

        Label {
            text: qsTr("requests")
            color: Theme.text
            font.pixelSize: Theme.plainText
        }

        HintBox {
            objectName: "nextHint"
            hints: focusForecast.focusModel.hints
            hint: focusForecast.focusModel.nextHint
            Layout.fillWidth: true
            Accessible.name: qsTr("How it would request")
            onChosen: focusForecast.focusModel.nextHint = hint
        }
    }

    Label {
        objectName: "nextText"
        text: focusForecast.focusModel.nextText
        color: focusForecast.focusModel.nextClient === "" ? Theme.faint : focusForecast.focusModel.nextGranted ? Theme.text : Theme.bad
        font.pixelSize: Theme.plainText
        wrapMode: Text.Wrap
        Layout.fillWidth: true
    }

    Repeater {
        model: focusForecast.focusModel.nextClient === "" ? [] : focusForecast.focusModel.nextLosses

        RowLayout {
            spacing: Theme.gap
            Layout.fillWidth: true

            Label {
                text: modelData.clientId
                color: Theme.text
                font.pixelSize: Theme.smallText
                wrapMode: Text.WrapAnywhere
                Layout.fillWidth: true
            }

            Label {
                text: modelData.told ? qsTr("is told %1").arg(modelData.lossName) : modelData.lossName === "None" ? qsTr("keeps focus") : qsTr("stays at %1").arg(modelData.lossName)
                color: modelData.told ? Theme.warning : Theme.faint
                font.pixelSize: Theme.smallText
            }
        }
    }

    Label {
        objectName: "releaseText"
        text: focusForecast.focusModel.releaseText
        color: Theme.text
        font.pixelSize: Theme.plainText
        wrapMode: Text.Wrap
        Layout.fillWidth: true
        Layout.topMargin: Theme.gap
    }
}

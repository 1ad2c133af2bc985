import QtQuick 2.15
import QtQml 2.15
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

            readonly property var ids: focusForecast.focusModel.clientIds

            objectName: "nextClient"
            model: ids.concat([qsTr("a new client")])
            font.pixelSize: Theme.plainText
            Layout.fillWidth: true
            Layout.minimumWidth: 100
            Accessible.name: qsTr("The client that would request")
            onActivated: focusForecast.focusModel.nextClient = index < ids.length ? ids[index] : ""

            Binding {
                target: client
                property: "currentIndex"
                value: {
                    const place = client.ids.indexOf(focusForecast.focusModel.nextClient);
                    return place < 0 ? client.ids.length : place;
                }
                restoreMode: Binding.RestoreNone
            }
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
        color: focusForecast.focusModel.nextGranted ? Theme.text : Theme.bad
        font.pixelSize: Theme.plainText
        wrapMode: Text.Wrap
        Layout.fillWidth: true
    }

    Repeater {
        model: focusForecast.focusModel.nextLosses

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

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

/// The settings, stored or not, with what the library makes of them; below it the chosen one to be edited.
Panel {
    id: panel

    required property SettingsModel model
    property string key: ""
    property string meaning: ""
    property string defaultText: ""

    title: model.cut < 0 ? qsTr("Settings") : qsTr("Settings, if the file ended before byte %1").arg(model.cut)

    RowLayout {
        Layout.fillWidth: true
        Layout.rightMargin: Theme.gap
        spacing: Theme.gap

        Label {
            Layout.fillWidth: true
            text: qsTr("Key")
            color: Theme.faint
            font.pixelSize: Theme.smallText
        }
        Label {
            Layout.preferredWidth: 90
            text: qsTr("Stored")
            color: Theme.faint
            font.pixelSize: Theme.smallText
        }
        Label {
            Layout.preferredWidth: 130
            text: qsTr("In effect")
            color: Theme.faint
            font.pixelSize: Theme.smallText
        }
    }
    ListView {
        id: table

        objectName: "settingsTable"
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.minimumHeight: 150
        clip: true
        reuseItems: true
        activeFocusOnTab: true
        keyNavigationEnabled: true
        currentIndex: 0
        boundsBehavior: Flickable.StopAtBounds
        model: panel.model.settings
        Accessible.role: Accessible.Table
        Accessible.name: qsTr("Settings")
        Keys.onReturnPressed: value.forceActiveFocus()
        Keys.onEnterPressed: value.forceActiveFocus()
        ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }
        delegate: ItemDelegate {
            id: entry

            required property int index
            required property string key
            required property string stored
            required property bool isStored
            required property string defaultText
            required property string meaning
            required property string inEffect
            required property string problem
            required property bool known
            readonly property color textColor: highlighted ? Theme.accentText : Theme.text
            readonly property color faintColor: highlighted ? Theme.accentText : Theme.faint

            function take() {
                panel.key = key;
                panel.meaning = meaning;
                panel.defaultText = defaultText;
                value.text = stored;
            }

            width: ListView.view.width - Theme.gap
            padding: Theme.smallGap
            highlighted: ListView.isCurrentItem
            Accessible.name: qsTr("%1: %2").arg(key).arg(isStored ? stored : qsTr("not stored")) + (problem === "" ? "" : ", " + problem)
            onClicked: {
                table.currentIndex = index;
                table.forceActiveFocus();
            }
            ListView.onIsCurrentItemChanged: if (ListView.isCurrentItem) take()
            onStoredChanged: if (ListView.isCurrentItem && !value.activeFocus) take()
            Component.onCompleted: if (ListView.isCurrentItem) take()

            contentItem: ColumnLayout {
                spacing: 0

                RowLayout {
                    Layout.fillWidth: true
                    spacing: Theme.gap

                    Label {
                        Layout.fillWidth: true
                        text: entry.key
                        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                        color: entry.textColor
                        font.pixelSize: Theme.smallText
                    }
                    Label {
                        Layout.preferredWidth: 90
                        text: entry.isStored ? entry.stored : "\u2013"
                        textFormat: Text.PlainText
                        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                        maximumLineCount: 4
                        elide: Text.ElideRight
                        color: entry.isStored ? entry.textColor : entry.faintColor
                        font.family: Theme.numbers
                        font.pixelSize: Theme.smallText
                    }
                    Label {
                        Layout.preferredWidth: 130
                        text: entry.known ? entry.inEffect : qsTr("unknown, kept")
                        textFormat: Text.PlainText
                        wrapMode: Text.Wrap
                        color: entry.isStored ? entry.textColor : entry.faintColor
                        font.pixelSize: Theme.smallText
                    }
                }
                Label {
                    Layout.fillWidth: true
                    visible: entry.problem !== ""
                    text: entry.problem
                    wrapMode: Text.Wrap
                    color: entry.highlighted ? Theme.accentText : Theme.bad
                    font.pixelSize: Theme.smallText
                }
            }
            background: Rectangle {
                color: entry.highlighted ? Theme.accent : entry.hovered ? Theme.field : "transparent"
                border.width: entry.highlighted && table.activeFocus ? 2 : 0
                border.color: Theme.text
            }
        }
    }
    Label {
        Layout.fillWidth: true
        text: panel.defaultText === "" ? qsTr("%1: %2").arg(panel.key).arg(panel.meaning)
                                       : qsTr("%1: %2; %3 where it is not stored").arg(panel.key).arg(panel.meaning).arg(panel.defaultText)
        textFormat: Text.PlainText
        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
        color: Theme.faint
        font.pixelSize: Theme.smallText
    }
    RowLayout {
        Layout.fillWidth: true

        TextField {
            id: value

            objectName: "settingsValue"
            Layout.fillWidth: true
            Layout.minimumWidth: 80
            selectByMouse: true
            font.family: Theme.numbers
            Accessible.name: qsTr("Value of %1").arg(panel.key)
            onAccepted: write.clicked()
        }
        Button {
            id: write

            objectName: "settingsWriteValue"
            text: qsTr("Write")
            enabled: value.text !== "" && panel.key !== ""
            Accessible.name: qsTr("Write the value of %1 into the file").arg(panel.key)
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: qsTr("Writes the file by hand; the unit is switched off for it")
            onClicked: panel.model.setValue(panel.key, value.text)
        }
        Button {
            objectName: "settingsRemoveValue"
            text: qsTr("Take out")
            enabled: panel.key !== ""
            Accessible.name: qsTr("Take %1 out of the file").arg(panel.key)
            onClicked: panel.model.setValue(panel.key, "")
        }
    }
}

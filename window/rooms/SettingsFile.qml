import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."
import "../carTime.js" as CarTime

/// The file as it is: its text, who wrote it last, and what else lies on the flash.
Panel {
    id: panel

    required property SettingsModel model
    /// Whether the text was changed here, and not written yet.
    readonly property bool isEdited: editor.text !== shownText
    property string shownText: ""

    function show() {
        if (isEdited && editor.activeFocus)
            return; // what is being typed stays
        shownText = model.cut < 0 ? model.text : model.cutText;
        editor.text = shownText;
    }

    title: qsTr("File on the flash")
    Component.onCompleted: show()

    Label {
        objectName: "settingsLastCause"
        Layout.fillWidth: true
        text: !panel.model.exists ? qsTr("There is no file: all defaults hold.")
            : panel.model.lastCause === "" ? qsTr("%1 bytes.").arg(panel.model.size)
            : qsTr("%1 bytes, written %2 times, last at %3: %4").arg(panel.model.size).arg(panel.model.writes).arg(CarTime.toText(panel.model.lastWrite)).arg(panel.model.lastCause)
        textFormat: Text.PlainText
        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
        font.pixelSize: Theme.smallText
    }
    Label {
        objectName: "settingsProblem"
        Layout.fillWidth: true
        visible: panel.model.problem !== ""
        text: panel.model.problem
        wrapMode: Text.Wrap
        color: Theme.bad
        font.pixelSize: Theme.smallText
    }
    ScrollView {
        Layout.fillWidth: true
        Layout.preferredHeight: 150
        clip: true

        TextArea {
            id: editor

            objectName: "settingsText"
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.WrapAnywhere
            selectByMouse: true
            readOnly: panel.model.cut >= 0
            font.family: Theme.numbers
            font.pixelSize: Theme.smallText
            color: readOnly ? Theme.faint : Theme.text
            Accessible.name: qsTr("Text of the settings file")
            KeyNavigation.priority: KeyNavigation.BeforeItem
            KeyNavigation.tab: writeText
            background: Rectangle {
                color: Theme.field
                border.color: editor.activeFocus ? Theme.accent : Theme.line
            }
        }
    }
    Flow {
        Layout.fillWidth: true
        spacing: Theme.gap

        Button {
            id: writeText

            objectName: "settingsWriteText"
            text: qsTr("Write this text")
            enabled: panel.isEdited
            onClicked: {
                panel.model.write(editor.text);
                panel.shownText = editor.text;
            }
        }
        Button {
            objectName: "settingsRevertText"
            text: qsTr("Back to the file's")
            enabled: panel.isEdited
            onClicked: {
                panel.shownText = panel.model.text;
                editor.text = panel.model.text;
            }
        }
        Button {
            objectName: "settingsErase"
            text: qsTr("Erase the file")
            enabled: panel.model.exists
            onClicked: panel.model.erase()
        }
    }
    Label {
        text: qsTr("All that lies there")
        color: Theme.faint
        font.pixelSize: Theme.smallText
    }
    Repeater {
        model: panel.model.files

        Label {
            required property string name
            required property double size
            required property string meaning

            Layout.fillWidth: true
            text: qsTr("%1, %2 bytes: %3").arg(name).arg(size).arg(meaning)
            textFormat: Text.PlainText
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            color: name === "audioData.db" ? Theme.text : Theme.warning
            font.pixelSize: Theme.smallText
        }
    }
    Label {
        visible: panel.model.files.count === 0
        text: qsTr("Nothing.")
        color: Theme.faint
        font.pixelSize: Theme.smallText
    }
    Connections {
        target: panel.model
        function onFileChanged() { panel.show(); }
        function onCutChanged() { panel.show(); }
    }
}

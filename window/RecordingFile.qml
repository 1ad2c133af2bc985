import QtQuick 2.15
import QtQuick.Controls 2.15
import Qt.labs.platform 1.1 as Platform
import QzAudio.Desk 1.0
import "."

/// The file that the recording is kept in, with the questions for one, and the one that saves what would be lost.
Item {
    id: keeper

    /// Where the recording was last saved to or opened from; empty for nowhere.
    property url file
    readonly property string fileName: decodeURIComponent(String(file).replace(/^.*\//, ""))
    /// Whether something would be lost. A car that was switched on and nothing else is nothing.
    readonly property bool atStake: Desk.recording.unsaved && Desk.recording.count > 1
    /// What is done once the recording is saved, or given up.
    property var next: null

    /// Does something that ends the recording, after asking where that would lose steps.
    function leave(action) {
        if (!atStake) {
            action();
            return;
        }
        next = action;
        question.open();
    }

    function finish() {
        var action = next;
        next = null;
        if (action)
            action();
    }

    function open(url) {
        leave(function () {
            Desk.message = "";
            Desk.open(url);
            // Someone's own scenario is no place for a recording.
            if (Desk.message === "")
                keeper.file = Desk.scenario === "" ? url : "";
        });
    }

    function openBundled(name) {
        leave(function () {
            Desk.openBundled(name);
            keeper.file = "";
        });
    }

    function startAnew() {
        leave(function () {
            Desk.startAnew();
            keeper.file = "";
        });
    }

    function askForFile() {
        openDialog.open();
    }

    function save() {
        if (String(file) === "")
            saveAs();
        else if (Desk.save(file))
            finish();
    }

    function saveAs() {
        saveDialog.open();
    }

    Connections {
        target: Desk
        function onScenarioChanged() {
            if (Desk.scenario !== "")
                keeper.file = "";
        }
    }

    Platform.FileDialog {
        id: openDialog

        title: qsTr("Open a scenario")
        nameFilters: [qsTr("Scenarios (*.js)")]
        onAccepted: keeper.open(file)
    }

    Platform.FileDialog {
        id: saveDialog

        title: qsTr("Save the recording")
        fileMode: Platform.FileDialog.SaveFile
        defaultSuffix: "js"
        nameFilters: [qsTr("Scenarios (*.js)")]
        onAccepted: {
            if (!Desk.save(file))
                return;
            keeper.file = file;
            keeper.finish();
        }
        onRejected: keeper.next = null
    }

    Dialog {
        id: question

        objectName: "unsavedQuestion"
        parent: Overlay.overlay
        anchors.centerIn: parent
        width: 440
        modal: true
        title: qsTr("The recording is not saved")
        standardButtons: Dialog.Save | Dialog.Discard | Dialog.Cancel
        closePolicy: Popup.CloseOnEscape
        onAccepted: keeper.save()
        onDiscarded: {
            close();
            keeper.finish();
        }
        onRejected: keeper.next = null
        onOpened: standardButton(Dialog.Save).forceActiveFocus()

        Label {
            width: parent.width
            text: qsTr("It has steps that no file has. Without saving they are lost.")
            wrapMode: Text.Wrap
            font.pixelSize: Theme.plainText
        }
    }
}

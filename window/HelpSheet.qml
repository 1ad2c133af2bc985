import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "."

/// The keys of the window, and where its manual is.
Dialog {
    id: sheet

    /// File of the manual; empty where it is not installed.
    property string manual

    readonly property var keys: [
        [qsTr("Space, F5"), qsTr("time runs, or stands still")],
        [qsTr("Ctrl+F5"), qsTr("ten times as fast")],
        [qsTr("F10"), qsTr("to the next timer")],
        [qsTr("Ctrl+Z, Ctrl+Shift+Z"), qsTr("undo, redo")],
        [qsTr("Ctrl+G"), qsTr("to another moment: type its time")],
        [qsTr("Ctrl+1 to Ctrl+8"), qsTr("the rooms, also Alt with the underlined letter")],
        [qsTr("Ctrl+O, Ctrl+S, Ctrl+Shift+S"), qsTr("open, save, save as")],
        [qsTr("Ctrl+N"), qsTr("a new car")],
        [qsTr("Ctrl+L"), qsTr("type a line of a scenario")],
        [qsTr("Ctrl+R"), qsTr("the recording, shown or hidden")],
        [qsTr("Tab, arrows, Enter"), qsTr("from control to control, change, do")],
        [qsTr("Ctrl+Q"), qsTr("end")]
    ]

    objectName: "helpSheet"
    parent: Overlay.overlay
    anchors.centerIn: parent
    width: 560
    modal: true
    title: qsTr("Keys")
    standardButtons: Dialog.Close
    onOpened: standardButton(Dialog.Close).forceActiveFocus()

    ColumnLayout {
        width: parent.width
        spacing: Theme.gap

        GridLayout {
            Layout.fillWidth: true
            columns: 2
            columnSpacing: 2 * Theme.gap
            rowSpacing: Theme.smallGap

            Repeater {
                model: sheet.keys.length * 2

                Label {
                    readonly property int column: index % 2

                    Layout.fillWidth: column === 1
                    text: sheet.keys[Math.floor(index / 2)][column]
                    font.pixelSize: Theme.plainText
                    font.bold: column === 0
                    wrapMode: Text.Wrap
                    color: Theme.text
                }
            }
        }
        Label {
            Layout.fillWidth: true
            objectName: "manualText"
            text: sheet.manual ? qsTr("The manual is %1").arg(sheet.manual)
                               : qsTr("The manual, docs/window.md, comes with the package libqzaudio-doc.")
            wrapMode: Text.WrapAnywhere
            font.pixelSize: Theme.smallText
            color: Theme.faint
        }
        Button {
            objectName: "manualButton"
            visible: sheet.manual.length > 0
            text: qsTr("Open the manual")
            Accessible.name: text
            onClicked: Qt.openUrlExternally("file://" + sheet.manual)
        }
    }
}

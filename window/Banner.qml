import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "."

/// A line across the window that tells something, with the buttons that belong to it.
Rectangle {
    id: banner

    property string text
    property color mark: Theme.accent
    default property alias buttons: row.data

    implicitHeight: visible ? row.implicitHeight + Theme.gap : 0
    visible: text.length > 0
    color: Theme.panel
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Rectangle {
        width: 4
        height: parent.height
        color: banner.mark
    }
    Rectangle {
        y: parent.height - height
        width: parent.width
        height: 1
        color: Theme.line
    }
    RowLayout {
        id: row

        anchors.verticalCenter: parent.verticalCenter
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: Theme.gap + 4
        anchors.rightMargin: Theme.gap
        spacing: Theme.gap

        Label {
            objectName: banner.objectName + "Text"
            Layout.fillWidth: true
            text: banner.text
            textFormat: Text.PlainText
            color: Theme.text
            font.pixelSize: Theme.plainText
            wrapMode: Text.Wrap
            maximumLineCount: 3
            elide: Text.ElideRight
        }
    }
}

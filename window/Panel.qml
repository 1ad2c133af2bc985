import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

/// A part of a room with its title; what stands in it is laid out from top to bottom.
GroupBox {
    id: panel

    default property alias contents: column.data

    padding: Theme.gap
    topPadding: titleText.height + 2 + Theme.gap
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    background: Rectangle {
        y: titleText.height + 2
        width: parent.width
        height: parent.height - y
        color: Theme.panel
        border.color: Theme.line
        radius: 4
    }
    label: Text {
        id: titleText

        leftPadding: Theme.smallGap
        text: panel.title
        color: Theme.faint
        font.pixelSize: Theme.smallText
        font.bold: true
    }

    ColumnLayout {
        id: column

        anchors.fill: parent
        spacing: Theme.gap
    }
}

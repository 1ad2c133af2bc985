import QtQuick 2.15
import ".."

/// What a line of a picture is, beside a piece of that line.
Row {
    id: legend

    property alias text: words.text
    property color color
    property bool isDashed: false

    spacing: Theme.smallGap
    height: 24

    Row {
        anchors.verticalCenter: parent.verticalCenter
        spacing: legend.isDashed ? 3 : 0

        Repeater {
            model: 3

            Rectangle {
                width: legend.isDashed ? 6 : 8
                height: 3
                color: legend.color
            }
        }
    }

    Text {
        id: words

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.text
        font.pixelSize: Theme.smallText
    }
}

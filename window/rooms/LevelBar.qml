import QtQuick 2.15
import ".."

/// A level as a bar, with its text on it.
Rectangle {
    id: bar

    /// From 0 to 1.
    property real value
    property string text

    implicitWidth: 110
    implicitHeight: 20
    radius: 3
    color: Theme.field
    border.color: Theme.line
    Accessible.role: Accessible.ProgressBar
    Accessible.description: text

    Rectangle {
        x: 1
        y: parent.height - height - 1
        width: (parent.width - 2) * bar.value
        height: 3
        color: Theme.accent
    }

    Text {
        anchors.fill: parent
        anchors.leftMargin: Theme.smallGap
        anchors.bottomMargin: 3
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        text: bar.text
        color: Theme.text
        font.pixelSize: Theme.smallText
    }
}

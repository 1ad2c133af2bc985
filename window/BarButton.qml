import QtQuick 2.15
import QtQuick.Controls 2.15
import "."

/// A button of the bars around a room, with a hint that tells what it does and by which key.
ToolButton {
    id: button

    property string hint
    property string keys

    implicitHeight: 32
    leftPadding: Theme.gap
    rightPadding: Theme.gap
    font.pixelSize: Theme.plainText
    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    Accessible.description: ToolTip.text
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    ToolTip.visible: hovered && ToolTip.text.length > 0
    ToolTip.delay: 600
    ToolTip.text: keys ? qsTr("%1 (%2)").arg(hint).arg(keys) : hint
}

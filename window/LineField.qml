import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import "."

/// A field for any line of a scenario: Enter performs it, the arrows bring those back that were typed before.
TextField {
    id: field

    property var typed: []
    property int at: 0

    function recall(row) {
        at = Math.max(0, Math.min(typed.length, row));
        text = at < typed.length ? typed[at] : "";
    }

    objectName: "lineField"
    placeholderText: qsTr("AudioPolicy.setMute(true);")
    font.family: Theme.numbers
    font.pixelSize: Theme.smallText
    selectByMouse: true
    inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText
    Accessible.name: qsTr("A line of a scenario, which Enter performs")
    ToolTip.visible: hovered
    ToolTip.delay: 600
    ToolTip.text: qsTr("Any line of a scenario; Enter performs it (Ctrl+L leads here)")
    Keys.onUpPressed: recall(at - 1)
    Keys.onDownPressed: recall(at + 1)
    onAccepted: {
        var line = text.trim();
        if (line === "")
            return;
        typed = typed.filter(function (old) { return old !== line; }).concat([line]);
        at = typed.length;
        clear();
        Desk.perform(line);
    }
}

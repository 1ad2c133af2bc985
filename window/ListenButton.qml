import QtQuick 2.15
import QtQuick.Controls 2.15
import QzAudio.Desk 1.0
import "."

/// Switches on that what the car plays now is heard, where this machine can play.
BarButton {
    id: button

    objectName: "listenButton"
    text: qsTr("Listen")
    checkable: true
    checked: listening.on
    hint: listening.note === "" ? qsTr("Hear what the car plays now, with sounds made for its sources") : listening.note
    Accessible.checkable: true
    Accessible.checked: checked
    onClicked: {
        // A pointer switches the button itself, a key does not.
        listening.on = !listening.on;
        checked = Qt.binding(() => listening.on);
        if (listening.note !== "")
            noteTip.open();
    }

    Listening {
        id: listening

        desk: Desk
        onNoteChanged: {
            if (note !== "")
                noteTip.open();
        }
    }
    ToolTip {
        id: noteTip

        objectName: "listenNote"
        timeout: 8000
        text: listening.note
    }
}

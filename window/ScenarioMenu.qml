import QtQuick 2.15
import QtQuick.Controls 2.15
import QzAudio.Desk 1.0
import "."

/// What can be done with a recording as a whole, and the scenarios that come with the bench.
Menu {
    id: menu

    signal openWanted()
    signal bundledWanted(string name)
    signal saveWanted()
    signal saveAsWanted()
    signal startAnewWanted()

    objectName: "scenarioMenu"
    width: 220

    MenuItem {
        objectName: "openItem"
        text: qsTr("Open\u2026 (Ctrl+O)")
        onTriggered: menu.openWanted()
    }
    MenuItem {
        objectName: "saveItem"
        text: qsTr("Save (Ctrl+S)")
        onTriggered: menu.saveWanted()
    }
    MenuItem {
        objectName: "saveAsItem"
        text: qsTr("Save as\u2026 (Ctrl+Shift+S)")
        onTriggered: menu.saveAsWanted()
    }
    MenuItem {
        objectName: "startAnewItem"
        text: qsTr("A new car (Ctrl+N)")
        onTriggered: menu.startAnewWanted()
    }
    MenuSeparator { }
    Menu {
        id: bundled

        objectName: "bundledMenu"
        title: qsTr("Play")
        enabled: entries.count > 0

        Instantiator {
            id: entries

            model: Desk.bundledScenarios()
            delegate: MenuItem {
                objectName: "scenario-" + modelData
                text: modelData
                onTriggered: menu.bundledWanted(modelData)
            }
            onObjectAdded: bundled.insertItem(index, object)
            onObjectRemoved: bundled.removeItem(object)
        }
    }
}

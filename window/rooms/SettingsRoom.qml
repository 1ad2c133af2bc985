import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

Item {
    id: room

    property bool active: false
    readonly property bool isWide: width >= 760

    objectName: "settingsRoom"

    SettingsModel {
        id: settings

        desk: Desk
        active: room.active
    }

    // In a wide room the table stays where it is, and what can be done scrolls beside it; in a narrow one all of it scrolls.
    FocusFlickable {
        id: flickable

        anchors.fill: parent
        anchors.margins: Theme.gap
        contentHeight: room.isWide ? height : table.height + Theme.gap + column.height
        interactive: !room.isWide

        SettingsTable {
            id: table

            model: settings
            width: room.isWide ? Math.floor((flickable.width - Theme.gap) / 2) : flickable.width - Theme.gap
            height: room.isWide ? flickable.height : 420
        }
        FocusFlickable {
            id: actions

            x: room.isWide ? table.width + Theme.gap : 0
            y: room.isWide ? 0 : table.height + Theme.gap
            width: table.width
            height: room.isWide ? flickable.height : contentHeight
            contentHeight: column.height
            interactive: room.isWide

            ColumnLayout {
                id: column

                width: actions.width - Theme.gap
                spacing: Theme.gap

                SettingsFile {
                    model: settings
                    Layout.fillWidth: true
                }
                SettingsDamage {
                    model: settings
                    Layout.fillWidth: true
                }
            }
        }
    }
}

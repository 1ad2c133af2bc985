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

    Flickable {
        id: flickable

        anchors.fill: parent
        anchors.margins: Theme.gap
        contentHeight: grid.height
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        ScrollBar.vertical: ScrollBar {}

        GridLayout {
            id: grid

            width: flickable.width - Theme.gap
            height: room.isWide ? Math.max(flickable.height, right.implicitHeight) : implicitHeight
            columns: room.isWide ? 2 : 1
            columnSpacing: Theme.gap
            rowSpacing: Theme.gap

            SettingsTable {
                model: settings
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: 1
                Layout.preferredHeight: 380
                Layout.alignment: Qt.AlignTop
            }
            ColumnLayout {
                id: right

                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.alignment: Qt.AlignTop
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

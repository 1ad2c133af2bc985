import QtQuick 2.15
import QtQuick.Controls 2.15
import QzAudio.Desk 1.0

/// What is done to the settings file by hand, and what a start makes of it.
WindowTest {
    name: "Settings"

    function text() {
        return item("settingsText").text;
    }

    /// Also where it has to be scrolled to.
    function press(name) {
        tryVerify(function () { return item(name).enabled; });
        item(name).forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Space);
    }

    function lookAtFile() {
        goToRoom("Settings");
        perform("AudioPolicy.setVolume(AudioPolicy.Media, 7, true);");
        tryVerify(function () { return text().indexOf("0=7\n") >= 0; });
    }

    function test_value_by_keyboard() {
        lookAtFile();
        var table = item("settingsTable");
        table.currentIndex = 1;
        table.forceActiveFocus();
        keyClick(Qt.Key_Up);
        compare(table.currentIndex, 0);
        keyClick(Qt.Key_Return);
        tryCompare(item("settingsValue"), "activeFocus", true);
        compare(item("settingsValue").text, "7");
        item("settingsValue").selectAll();
        for (var character of "99")
            keyClick(character);
        keyClick(Qt.Key_Return);
        tryVerify(function () { return text().indexOf("0=99\n") >= 0; });
        tryVerify(function () { return snapshot("drive").on === false; });
        tryVerify(function () { return item("settingsLastCause").text.indexOf("by hand") >= 0; });
        press("settingsStart");
        tryVerify(function () { return snapshot("drive").on === true && snapshot("drive").volumes[0] === 99; }, 5000, "a volume that is stored is not clamped");
    }

    function test_cut_off() {
        lookAtFile();
        var size = text().length;
        item("settingsCutSlider").forceActiveFocus();
        for (var i = 0; i < 3; ++i)
            keyClick(Qt.Key_Left);
        tryCompare(item("settingsCutByte"), "value", size - 3);
        compare(text().length, size - 3);
        verify(item("settingsText").readOnly);
        verify(item("settingsCutPreview").text.indexOf("1 settings would not count") >= 0, item("settingsCutPreview").text);
        press("settingsCutCancel");
        tryVerify(function () { return text().length === size && !item("settingsText").readOnly; });
        item("settingsCutSlider").forceActiveFocus();
        for (var left = 0; left < 4; ++left)
            keyClick(Qt.Key_Left);
        press("settingsCutOff");
        tryVerify(function () { return text().length === size - 4 && !item("settingsText").readOnly; });
        tryVerify(function () { return snapshot("drive").on === false; });
        press("settingsStart");
        tryVerify(function () { return snapshot("drive").on === true && item("settingsStartChanges").visible; });
    }

    function test_text_that_is_typed() {
        lookAtFile();
        var area = item("settingsText");
        area.forceActiveFocus();
        area.cursorPosition = 0;
        for (var character of "[X]")
            keyClick(character);
        keyClick(Qt.Key_Return);
        perform("AudioPolicy.setVolume(AudioPolicy.Media, 8, true);");
        compare(text().indexOf("[X]\n"), 0, "a save does not take away what is being typed");
        press("settingsRevertText");
        tryVerify(function () { return text().indexOf("0=8\n") >= 0 && text().indexOf("[X]") < 0; });
    }

    function test_power_cut() {
        lookAtFile();
        press("settingsCutPower");
        tryVerify(function () { return snapshot("drive").on === false; });
        tryVerify(function () { return lastLine().indexOf("cutPowerWhileSaving(30, ") === 0; });
        press("settingsStart");
        tryVerify(function () { return snapshot("drive").on === true; });
        compare(snapshot("drive").volumes[0], 7);
    }
}

import QtQuick 2.15
import QtQuick.Controls 2.15
import QzAudio.Desk 1.0

WindowTest {
    name: "Unit"

    function test_fault() {
        goToRoom("Platform");
        var operations = item("platformOperations");
        tryVerify(function () { return operations.count > 20; });
        operations.currentIndex = 0;
        tryVerify(function () { return operations.currentItem !== null; });
        operations.forceActiveFocus();
        tryVerify(function () {
            if (String(operations.currentItem.Accessible.name).indexOf("Volume.muteTrack") === 0)
                return true;
            keyClick(Qt.Key_Down);
            return false;
        }, 10000, "there is the operation Volume.muteTrack");
        click("platformFailNext");
        tryVerify(function () { return snapshot("platform").faults.length === 1; });
        verify(lastLine().indexOf("Platform.failOnce(\"Volume.muteTrack\"") === 0, lastLine());
        perform("AudioPolicy.setMute(true);");
        tryVerify(function () { return snapshot("platform").counts["Volume.muteTrack"].refused === 1; });
        compare(snapshot("platform").faults.length, 0);
        verify(snapshot("drive").muted, "the unit counts as muted all the same");
        click("platformTabCalls");
        tryVerify(function () { return item("platformCalls").count > 0; });
    }

    function test_focus() {
        goToRoom("Focus");
        var field = item("newClientId");
        mouseClick(field);
        for (var character of "music")
            keyClick(character);
        click("addClient");
        tryVerify(function () { return snapshot("focus").clients.length === 1; });
        click("request0");
        tryVerify(function () { return snapshot("focus").stack.length === 1 && snapshot("focus").clients[0].held; });
        click("release0");
        tryVerify(function () { return snapshot("focus").stack.length === 0; });
    }

    function test_settings_that_are_cut() {
        goToRoom("Settings");
        perform("AudioPolicy.setVolume(AudioPolicy.Media, 7, true);");
        tryVerify(function () { return item("settingsText").text.indexOf("0=7") >= 0; });
        verify(item("settingsLastCause").text.indexOf("setVolume(Media, 7, true)") >= 0, item("settingsLastCause").text);
        click("settingsErase");
        tryVerify(function () { return item("settingsText").text.indexOf("0=7") < 0; });
        // The file is gone before the car tells so.
        tryVerify(function () { return lines().some(function (line) { return line.indexOf("eraseSettings()") >= 0; }); });
    }

    function test_calibration() {
        goToRoom("Microphone");
        click("microphoneStartCalibration");
        tryVerify(function () { return snapshot("microphone").calibration === 1; });
        click("microphoneTakeCalibration");
        tryVerify(function () { return snapshot("microphone").calibration === 2; });
    }
}

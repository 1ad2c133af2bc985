import QtQuick 2.15
import QzAudio.Desk 1.0

WindowTest {
    readonly property int failedRole: Qt.UserRole + 4

    name: "Tone"

    function tone() {
        return snapshot("tone");
    }

    /// How often the platform was called.
    function calls() {
        return Object.values(snapshot("platform").counts).reduce((sum, operation) => sum + operation.calls, 0);
    }

    /// y of the handle of a slider.
    function handleY(slider) {
        return slider.handle.y + slider.handle.height / 2;
    }

    /// Drags the handle of a slider by so many pixels, with many moves on the way.
    function drag(slider, pixels) {
        var x = slider.width / 2;
        var y = handleY(slider);
        mousePress(slider, x, y);
        for (var moved = 1; moved <= Math.abs(pixels); ++moved)
            mouseMove(slider, x, y + moved * Math.sign(pixels));
        mouseRelease(slider, x, y + pixels);
    }

    function test_presets_and_modes() {
        goToRoom("Tone");
        click("equalizerType3");
        tryVerify(function () { return tone().equalizerType === 3; });
        compare(lastLine(), "AudioPolicy.setEqType(3);");
        tryVerify(function () { return item("legendNow").text.indexOf("preset 3 of the store") >= 0; });
        verify(item("equalizerType3").highlighted);
        click("equalizerMode5");
        tryVerify(function () { return item("legendNow").text.indexOf("mode 5 of the facade") >= 0; });
        compare(lastLine(), "AudioControl.setEqMode(5);");
        compare(tone().equalizerType, 3);
        mouseMove(window.contentItem, 1, 1); // the tooltip of what the mouse was on goes
        tryVerify(function () { return !item("equalizerMode5").hovered; });
        click("equalizerType7");
        tryVerify(function () { return item("legendNow").text.indexOf("the custom curve, needs 0.0 dB") >= 0; });
    }

    function test_drag_is_one_step() {
        goToRoom("Tone");
        var slider = item("band4Slider");
        var count = Desk.recording.count;
        drag(slider, -40);
        tryVerify(function () { return Desk.recording.count === count + 1; });
        var value = tone().customCurve[4] / 2;
        tryVerify(function () { return (value = tone().customCurve[4] / 2) > 0; });
        compare(lastLine(), "AudioPolicy.adjustCustomEq(" + value + ", 4);");
        tryCompare(slider, "value", 2 * value);
        compare(tone().equalizerType, 7);
        // One that ends where it began is none.
        var y = handleY(slider);
        mousePress(slider, slider.width / 2, y);
        mouseMove(slider, slider.width / 2, y - 30);
        mouseMove(slider, slider.width / 2, y);
        mouseRelease(slider, slider.width / 2, y);
        wait(100);
        compare(Desk.recording.count, count + 1);
        compare(slider.value, 2 * value);
    }

    function test_keys() {
        goToRoom("Tone");
        item("band2Slider").forceActiveFocus();
        keyClick(Qt.Key_Up);
        tryVerify(function () { return tone().customCurve[2] === 2; });
        keyClick(Qt.Key_Up);
        tryVerify(function () { return tone().customCurve[2] === 4; });
        keyClick(Qt.Key_Right);
        tryCompare(item("band3Slider"), "activeFocus", true);
        keyClick(Qt.Key_Down);
        tryVerify(function () { return tone().customCurve[3] === -2; });
        compare(lines().slice(-3), ["AudioPolicy.adjustCustomEq(1, 2);", "AudioPolicy.adjustCustomEq(2, 2);", "AudioPolicy.adjustCustomEq(-1, 3);"]);
        compare(item("bandText").text, "Band at 200 Hz: -2 dB");
    }

    function test_repeated_gain() {
        goToRoom("Tone");
        item("band0Slider").forceActiveFocus();
        keyClick(Qt.Key_Up);
        tryVerify(function () { return item("repeatHint").text.indexOf("For another 500 ms") === 0; });
        var before = calls();
        click("sendAgain");
        tryVerify(function () { return lines().filter(line => line === "AudioPolicy.adjustCustomEq(1, 0);").length === 2; });
        wait(100);
        compare(calls(), before);
        Desk.goTo(600);
        tryVerify(function () { return Desk.now === 600 && !Desk.replaying; });
        tryVerify(function () { return item("repeatHint").text.indexOf("Steps of 2 dB") === 0; });
        before = calls();
        click("sendAgain");
        tryVerify(function () { return calls() > before; });
    }

    function test_comparison() {
        goToRoom("Tone");
        verify(!item("legendCompared").visible);
        item("comparison").forceActiveFocus();
        for (var i = 0; i < 10; ++i)
            keyClick(Qt.Key_Down);
        tryCompare(item("legendCompared"), "visible", true);
        compare(item("legendCompared").text.indexOf("mode 2 of the facade, needs "), 0, item("legendCompared").text);
        compare(item("responsePlot").otherCurve.bands.length, 8);
        for (i = 0; i < 10; ++i)
            keyClick(Qt.Key_Up);
        tryCompare(item("legendCompared"), "visible", false);
    }

    function test_loudness_and_expectations() {
        goToRoom("Tone");
        item("loudness").forceActiveFocus();
        keyClick(Qt.Key_Space);
        tryVerify(function () { return tone().loudness === true; });
        compare(lastLine(), "AudioPolicy.setLoudNess(true);");
        tryVerify(function () { return item("legendNow").text.indexOf("with loudness") >= 0; });
        for (var button of ["expectLoudness", "expectType", "expectBand"]) {
            var count = Desk.recording.count;
            click(button);
            tryVerify(function () { return Desk.recording.count === count + 1; });
            verify(lastLine().indexOf("expect(") === 0, lastLine());
        }
        for (var row = Desk.recording.count - 3; row < Desk.recording.count; ++row)
            verify(!Desk.recording.data(Desk.recording.index(row, 0), failedRole), lines()[row]);
    }

    function test_narrow() {
        window.width = 1024;
        window.height = 600;
        window.recordingShown = true;
        var room = goToRoom("Tone");
        tryVerify(function () { return room.width < 660; });
        for (var name of ["sendAgain", "equalizerType0", "band15Slider"]) {
            var control = item(name);
            waitForRendering(control, 500);
            control.forceActiveFocus(Qt.TabFocusReason);
            tryVerify(function () {
                var place = control.mapToItem(room, 0, 0);
                return place.y >= 0 && place.y + control.height <= room.height && place.x >= 0 && place.x + control.width <= room.width;
            }, 5000, name + " is in sight");
        }
        window.recordingShown = false;
    }
}

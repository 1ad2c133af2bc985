import QtQuick 2.15
import QzAudio.Desk 1.0

WindowTest {
    name: "Sound"

    function test_fade_is_dragged() {
        goToRoom("Car");
        var place = item("place");
        tryVerify(function () { return place.width > 0; });
        mouseDrag(place, place.width / 2, place.height / 2, -place.width / 2, -place.height / 4, Qt.LeftButton, Qt.NoModifier, 20);
        tryVerify(function () { return snapshot("car").fade > 0 && snapshot("car").balance > 0; });
        compare(snapshot("car").balance, 15);
        compare(lastLine(), "AudioControl.setFadeBalance(" + snapshot("car").fade + ", 15);");
        compare(Desk.recording.count, 2, "a drag is one step");
        verify(snapshot("car").loudspeakers[1].gain < 100, "the right side is lowered");
        place.forceActiveFocus();
        keyClick(Qt.Key_Right);
        tryVerify(function () { return snapshot("car").balance === 14; });
    }

    function test_equalizer_is_dragged() {
        goToRoom("Tone");
        var slider = item("band3Slider");
        tryVerify(function () { return slider.height > 50; });
        var middle = slider.height / 2;
        mouseDrag(slider, slider.width / 2, middle, 0, -slider.height / 4, Qt.LeftButton, Qt.NoModifier, 20);
        tryVerify(function () { return snapshot("tone").customCurve[3] > 0; });
        var gain = snapshot("tone").customCurve[3];
        compare(lastLine(), "AudioPolicy.adjustCustomEq(" + gain / 2 + ", 3);");
        compare(Desk.recording.count, 2, "a drag is one step");
        tryVerify(function () { return snapshot("tone").equalizerType === 7; });
        compare(snapshot("tone").bands[3].gain, gain);
        slider.forceActiveFocus();
        keyClick(Qt.Key_Up);
        tryVerify(function () { return snapshot("tone").customCurve[3] === gain + 2; });
        click("equalizerType0");
        tryVerify(function () { return snapshot("tone").equalizerType === 0; });
    }

    function test_loudness() {
        goToRoom("Tone");
        click("loudness");
        tryVerify(function () { return snapshot("tone").loudness; });
    }
}

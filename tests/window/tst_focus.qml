import QtQuick 2.15
import QtQuick.Controls 2.15
import QzAudio.Desk 1.0

WindowTest {
    name: "Focus"

    function init() {
        Desk.startAnew();
        Desk.speed = 0;
        tryVerify(function () { return snapshot("drive").on === true && Desk.recording.doneCount === 1; }, 10000, "the car is on");
        goToRoom("Focus");
        tryVerify(function () { return item("stackEmpty").visible; });
    }

    function addByHand(id, hint) {
        var field = item("newClientId");
        field.forceActiveFocus();
        for (var character of id)
            keyClick(character);
        var box = item("newHint");
        box.forceActiveFocus();
        while (box.currentIndex < hint - 1)
            keyClick(Qt.Key_Down);
        while (box.currentIndex > hint - 1)
            keyClick(Qt.Key_Up);
        var count = snapshot("focus").clients.length;
        click("addClient");
        tryVerify(function () { return snapshot("focus").clients.length === count + 1; });
        compare(field.text, "");
    }

    function choose(name, text) {
        var index = item(name).find(text);
        verify(index >= 0, text);
        tryVerify(function () {
            var box = item(name); // each time: news of a client make its row anew
            if (box.currentIndex !== index) {
                box.forceActiveFocus();
                keyClick(box.currentIndex < index ? Qt.Key_Down : Qt.Key_Up);
            }
            return item(name).currentIndex === index;
        });
    }

    function test_clients_by_hand() {
        compare(item("addClient").enabled, false);
        addByHand("music", 1);
        addByHand("navigation", 3);
        compare(lines().slice(1), ['var music = new AudioFocus({clientId: "music", durationHint: AudioFocus.Gain});',
                                   'var navigation = new AudioFocus({clientId: "navigation", durationHint: AudioFocus.GainTransientMayDuck});']);
        click("request0");
        tryCompare(item("client0"), "text", "music holds focus");
        tryVerify(function () { return item("stackRow0").Accessible.name === "music, holds focus"; });
        click("request1");
        tryCompare(item("client1"), "text", "navigation holds focus");
        tryCompare(item("told0"), "text", "was told LossTransientCanDuck");
        tryVerify(function () { return item("stackRow1").Accessible.name === "music, was told LossTransientCanDuck"; });
        click("toldExpect0");
        tryVerify(function () { return lastLine() === "expect(music.changes).toEqual([AudioFocus.LossTransientCanDuck]);"; });
        click("release1");
        tryCompare(item("client0"), "text", "music holds focus");
        tryCompare(item("told0"), "text", "was told LossTransientCanDuck, Gain");
        click("heldExpect0");
        tryVerify(function () { return lastLine() === "expect(music.held).toBe(true);"; });
        choose("clientHint0", "GainTransient");
        tryVerify(function () { return snapshot("focus").clients[0].hint === 2; });
        compare(lastLine(), "music.durationHint = AudioFocus.GainTransient;");
        for (var i = 0; i < Desk.recording.count; ++i)
            verify(!Desk.recording.data(Desk.recording.index(i, 0), 0).failed);
    }

    function test_forecast_data() {
        return [
            { tag: "another hint of the holder", client: "navigation", hint: "Gain", text: "Granted; music is told Loss." },
            { tag: "one that waits", client: "music", hint: "GainTransientMayDuck", text: "Granted; navigation is told LossTransientCanDuck." },
            { tag: "a new client", client: "a new client", hint: "GainTransientExclusive", text: "Granted; music is told LossTransient, navigation is told LossTransient." },
        ];
    }

    function test_forecast(data) {
        perform('var music = new AudioFocus({clientId: "music"});');
        perform("music.request();");
        perform('var prompt = new AudioFocus({clientId: "navigation", durationHint: AudioFocus.GainTransientMayDuck});');
        perform("prompt.request();");
        tryCompare(item("releaseText"), "text", "When navigation releases focus, music is told Gain.");
        choose("nextClient", data.client);
        choose("nextHint", data.hint);
        tryCompare(item("nextText"), "text", data.text);
        // Nothing of it happens.
        compare(Desk.recording.count, 5);
    }

    function test_goes_back() {
        addByHand("music", 1);
        click("request0");
        tryCompare(item("client0"), "text", "music holds focus");
        Desk.undo();
        tryVerify(function () { return !Desk.replaying && item("stackEmpty").visible; });
        Desk.undo();
        tryVerify(function () { return !Desk.replaying && snapshot("focus").clients.length === 0; });
        // Another one of this name is another variable.
        addByHand("music", 1);
        tryVerify(function () { return Desk.recording.doneCount === 2; });
        click("request0");
        tryCompare(item("client0"), "text", "music holds focus");
    }

    function test_nothing_is_cut() {
        for (var id of ["music", "a rather long id of a client that somebody made", "IN_VOICE_COMM_FOCUS_ID"])
            perform('var c' + id.length + ' = new AudioFocus({clientId: "' + id + '", durationHint: AudioFocus.GainTransientExclusive});');
        for (var i = 0; i < 8; ++i) {
            perform("c5.request();");
            perform("c47.request();");
        }
        perform("c22.request();");
        window.recordingShown = true;
        window.width = 1024;
        var room = item("focusRoom");
        tryVerify(function () { return room.width < 700; });
        wait(200);
        var pending = [item("focusScroll").contentItem];
        while (pending.length > 0) {
            var each = pending.pop();
            for (i = 0; i < each.children.length; ++i)
                pending.push(each.children[i]);
            if (!each.visible || each.width === 0)
                continue;
            var place = each.mapToItem(room, 0, 0);
            if (each.objectName !== "" || each instanceof Label)
                verify(place.x >= 0 && place.x + each.width <= room.width + 1, each.objectName + " " + each.text + " ends at " + (place.x + each.width) + " of " + room.width);
            if (each instanceof Label)
                verify(!each.truncated && each.contentWidth <= each.width + 1, each.text);
            if (each instanceof ComboBox)
                verify(each.contentItem.contentWidth <= each.contentItem.width + 1, each.displayText + ": " + each.contentItem.contentWidth + " in " + each.contentItem.width);
        }
        window.recordingShown = false;
    }
}

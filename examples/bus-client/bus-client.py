#!/usr/bin/python3
"""Audio focus among processes, without the library: asks the focus daemon, and tells what it hears until it has lost focus for good.

    ./bus-client.py music

Needs the Debian packages python3-dbus and python3-gi, and a session bus with the focus daemon; examples/README.md tells how to get one.
Exit status: 0 after the loss; 1 where focus was denied, or nobody answers."""

import sys

import dbus
import dbus.mainloop.glib
from gi.repository import GLib

SERVICE = "tavi.AudioService"
GAIN = 1
NAMES = {1: "GAIN", -1: "LOSS", -2: "LOSS_TRANSIENT", -3: "LOSS_TRANSIENT_CAN_DUCK"}
STREAM_TYPE = 3  # a number of the application's own


class Client:
    def __init__(self, bus, client_id):
        self.client_id = client_id
        self.bus = bus
        self.loop = GLib.MainLoop()
        self.status = 0
        # Connected before the question, so that nothing which follows the grant is missed.
        bus.add_signal_receiver(self.focus_changed, "audioFocusChanged", SERVICE)
        # A daemon that ends forgets its stack. The bus starts it anew at the next question.
        bus.add_signal_receiver(self.owner_changed, "NameOwnerChanged", "org.freedesktop.DBus", arg0=SERVICE)

    def call(self, method, *arguments):
        return dbus.Interface(self.bus.get_object(SERVICE, "/tavi/AudioService", introspect=False), SERVICE).get_dbus_method(method)(*arguments)

    def request(self):
        try:
            granted = self.call("requestAudioFocus", dbus.Int32(STREAM_TYPE), dbus.Int32(GAIN), self.client_id) == 0
            print("granted" if granted else "denied", flush=True)
        except dbus.DBusException as error:
            print(error.get_dbus_message(), file=sys.stderr)
            granted = False
        if not granted:
            self.end(1)
        return granted

    def focus_changed(self, change, client):
        if client != self.client_id:
            return  # everybody gets the signal
        print(NAMES[int(change)], flush=True)
        if NAMES[int(change)] == "LOSS":
            self.call("abandonAudioFocus", self.client_id)  # else it would be given focus again, when the other one ends
            self.end(0)

    def owner_changed(self, _name, _before, now):
        if not now:
            self.request()

    def end(self, status):
        self.status = status
        self.loop.quit()

    def run(self):
        if self.request():
            self.loop.run()
        return self.status


def main():
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    try:
        bus = dbus.SessionBus()
    except dbus.DBusException as error:
        sys.exit(error.get_dbus_message())
    return Client(bus, sys.argv[1] if len(sys.argv) > 1 else "bus-client.py").run()


sys.exit(main())

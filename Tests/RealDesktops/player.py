"""A media player on the session bus that writes down what it is asked to do."""

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

PLAYER = "org.mpris.MediaPlayer2.Player"
ROOT = "org.mpris.MediaPlayer2"

PROPERTIES = {
    ROOT: {"Identity": "Stand-in", "DesktopEntry": "stand-in", "CanQuit": False, "CanRaise": False,
           "HasTrackList": False},
    PLAYER: {"PlaybackStatus": "Playing", "CanControl": True, "CanPlay": True, "CanPause": True,
             "CanGoNext": True, "CanGoPrevious": True, "CanSeek": False, "Rate": 1.0, "Volume": 1.0,
             "Metadata": dbus.Dictionary({"mpris:trackid": dbus.ObjectPath("/track/1"), "xesam:title": "Title"},
                                         signature="sv")},
}


class Player(dbus.service.Object):
    @dbus.service.method(PLAYER)
    def PlayPause(self):
        print("PlayPause", flush=True)

    @dbus.service.method(PLAYER)
    def Play(self):
        print("Play", flush=True)

    @dbus.service.method(PLAYER)
    def Pause(self):
        print("Pause", flush=True)

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        return PROPERTIES[interface][name]

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        return PROPERTIES.get(interface, {})

    @dbus.service.signal(dbus.PROPERTIES_IFACE, signature="sa{sv}as")
    def PropertiesChanged(self, interface, changed, invalidated):
        pass


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
name = dbus.service.BusName("org.mpris.MediaPlayer2.standin", bus)
player = Player(bus, "/org/mpris/MediaPlayer2")


def announce():
    player.PropertiesChanged(PLAYER, {"PlaybackStatus": "Playing"}, [])
    return False


GLib.timeout_add(500, announce)
GLib.MainLoop().run()

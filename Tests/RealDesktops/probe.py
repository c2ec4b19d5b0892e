"""An ordinary application: a text that is being edited. It writes down, a line of JSON each, what arrives at it, and
obeys commands on its standard input: "text WORDS" replaces the text, "select" selects all of it."""

import json
import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GLib, Gtk  # noqa: E402

NAMES = ((Gdk.ModifierType.CONTROL_MASK, "Control"), (Gdk.ModifierType.SHIFT_MASK, "Shift"),
         (Gdk.ModifierType.MOD1_MASK, "Alt"), (Gdk.ModifierType.MOD4_MASK, "Super"))
MODIFIERS = ("Control", "Shift", "Alt", "Super", "Meta", "Hyper", "ISO")


def say(**line):
    print(json.dumps(line), flush=True)


def key_pressed(_, event):
    name = Gdk.keyval_name(event.keyval)
    if name and not name.startswith(MODIFIERS):
        held = [text for bit, text in NAMES if event.state & bit]
        say(key="+".join(held + [name.upper() if len(name) == 1 else name]))
    return False


def button_pressed(_, event):
    say(button=event.button)
    # The editor's own menu would hold the pointer.
    return True


def obey(channel, _):
    line = channel.readline()
    if not line:
        Gtk.main_quit()
        return False
    command, _, words = line.rstrip("\n").partition(" ")
    buffer = view.get_buffer()
    if command == "text":
        buffer.set_text(words)
    elif command == "select":
        buffer.select_range(*buffer.get_bounds())
    window.present()
    view.grab_focus()
    say(done=line.rstrip("\n"))
    return True


view = Gtk.TextView()
view.connect("key-press-event", key_pressed)
view.connect("button-press-event", button_pressed)
view.connect("insert-emoji", lambda _: say(emoji=True))
view.get_buffer().connect("changed", lambda buffer: say(text=buffer.get_text(*buffer.get_bounds(), False)))
window = Gtk.Window(title="Probe")
window.set_default_size(700, 420)
window.move(320, 220)
window.add(view)
window.connect("focus-in-event", lambda *_: say(focus=True))
window.show_all()
GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, obey)
Gtk.main()

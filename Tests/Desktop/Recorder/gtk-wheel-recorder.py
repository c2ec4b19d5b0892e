#!/usr/bin/env python3
"""A GTK window that writes down, a line each, how far its wheel scrolled it and what buttons were pressed."""

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402


def say(line):
    print(line, flush=True)


content = Gtk.DrawingArea()
content.set_size_request(60000, 60000)
content.add_events(Gdk.EventMask.BUTTON_PRESS_MASK)
content.connect("button-press-event", lambda _, event: say(f"button {event.button}"))

view = Gtk.ScrolledWindow()
view.add(content)
axes = [view.get_hadjustment(), view.get_vadjustment()]
place = []


def scrolled(_):
    last = place.copy()
    place[:] = [axis.get_value() for axis in axes]
    say("wheel " + " ".join(f"{now - before:.3f}" for now, before in zip(place, last)))


window = Gtk.Window()
window.set_default_size(960, 560)
window.move(240, 160)
window.add(view)
window.connect("destroy", Gtk.main_quit)
window.show_all()
for axis in axes:
    axis.set_value(30000)
place[:] = [axis.get_value() for axis in axes]
for axis in axes:
    axis.connect("value-changed", scrolled)
Gtk.main()

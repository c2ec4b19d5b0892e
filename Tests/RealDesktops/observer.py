"""What a desktop looks like from outside, at one moment: its windows, desktops, clipboard, sound, files and views."""

import os
import re
import subprocess
import time
from dataclasses import dataclass, field
from pathlib import Path

import dbus
from Xlib import X, display, error

PATIENCE = 2.0
GNOME_SHELL = "org.gnome.Shell"
GNOME_PATH = "/org/gnome/Shell"


@dataclass
class Snapshot:
    # By their number: "class: title".
    windows: dict = field(default_factory=dict)
    desktop: int = -1
    showing_desktop: bool = False
    clipboard: str = ""
    volume: str = ""
    muted: str = ""
    files: frozenset = frozenset()
    # Views of the shell that are open, and whether the screen is locked.
    views: frozenset = frozenset()
    active: str = ""
    # The names of all the user's processes.
    programs: str = ""


class Observer:
    def __init__(self, home):
        self.home = Path(home)
        self.display = display.Display()
        self.root = self.display.screen().root
        self.bus = dbus.SessionBus()

    def snapshot(self):
        windows, active = self.windows()
        return Snapshot(
            windows=windows,
            active=active,
            desktop=self.number("_NET_CURRENT_DESKTOP", -1),
            showing_desktop=bool(self.number("_NET_SHOWING_DESKTOP", 0)),
            clipboard=output("xclip", "-o", "-selection", "clipboard"),
            volume=first(r"(\d+%)", output("pactl", "get-sink-volume", "speaker")),
            muted=first(r"Mute: (\w+)", output("pactl", "get-sink-mute", "speaker")),
            files=self.files(),
            views=frozenset(self.views()),
            programs=output("ps", "-u", str(os.getuid()), "-o", "comm="),
        )

    # Windows

    def number(self, name, otherwise):
        found = self.property(self.root, name)
        return int(found[0]) if found else otherwise

    def property(self, window, name):
        try:
            found = window.get_full_property(self.display.get_atom(name), X.AnyPropertyType)
        except (error.BadWindow, error.BadAtom):
            return []
        return found.value if found else []

    def windows(self):
        """Managed windows, and others that are shown: menus, launchers, notifications."""
        found = {}
        for number in self.property(self.root, "_NET_CLIENT_LIST"):
            found[int(number)] = self.display.create_resource_object("window", int(number))
        for window in self.root.query_tree().children:
            try:
                attributes, place = window.get_attributes(), window.get_geometry()
            except (error.BadWindow, error.BadDrawable):
                continue
            is_shown = attributes.map_state == X.IsViewable and attributes.win_class == X.InputOutput
            if is_shown and attributes.override_redirect and place.width > 20 and place.height > 20:
                found[window.id] = window
        named = {number: self.describe(window) for number, window in found.items()}
        active = self.property(self.root, "_NET_ACTIVE_WINDOW")
        return ({number: text for number, text in named.items() if text},
                named.get(int(active[0]), "") if len(active) else "")

    def describe(self, window):
        try:
            names = window.get_wm_class()
            title = self.property(window, "_NET_WM_NAME") or self.property(window, "WM_NAME")
        except error.BadWindow:
            return ""
        text = title.decode("utf-8", "replace") if isinstance(title, bytes) else ""
        program = names[1] if names else ""
        return f"{program}: {text}" if program or text else ""

    def processes(self):
        """The process of each managed window."""
        found = {}
        for number in self.property(self.root, "_NET_CLIENT_LIST"):
            window = self.display.create_resource_object("window", int(number))
            process = self.property(window, "_NET_WM_PID")
            if len(process):
                found[int(number)] = int(process[0])
        return found

    def ask_root(self, name, *values, window=None):
        """A request of the window manager, as a pager sends it."""
        from Xlib.protocol import event

        data = (32, (list(values) + [0] * 5)[:5])
        message = event.ClientMessage(
            window=window if window is not None else self.root, client_type=self.display.get_atom(name), data=data
        )
        self.root.send_event(message, event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self.display.flush()

    def close_window(self, number):
        self.ask_root("_NET_CLOSE_WINDOW", X.CurrentTime, 2, window=number)

    # Files and views

    def files(self):
        """The pictures, documents and other files that the user would see."""
        return frozenset(
            str(path.relative_to(self.home))
            for path in self.home.rglob("*")
            if path.is_file() and not any(part.startswith(".") for part in path.relative_to(self.home).parts)
        )

    def views(self):
        if self.is_overview():
            yield "overview"
        effects = self.read("org.kde.KWin", "/Effects", "org.kde.kwin.Effects", "activeEffects") or []
        # Those that stay on while nothing is shown are none.
        for effect in effects:
            if effect in ("overview", "windowview", "presentwindows", "desktopgrid"):
                yield str(effect)
        for saver in ("org.gnome.ScreenSaver", "org.mate.ScreenSaver", "org.xfce.ScreenSaver",
                      "org.freedesktop.ScreenSaver"):
            if self.call(saver, "/" + saver.replace(".", "/"), saver, "GetActive"):
                yield "locked"

        if "locked" in output("xscreensaver-command", "-time"):
            yield "locked"

    def is_overview(self):
        return bool(self.read(GNOME_SHELL, GNOME_PATH, GNOME_SHELL, "OverviewActive"))

    def wait_for_overview(self):
        """GNOME begins with it, some time after the rest is there."""
        end = time.monotonic() + 20
        while not self.is_overview() and time.monotonic() < end:
            time.sleep(0.3)

    def leave_overview(self):
        if not self.bus.name_has_owner(GNOME_SHELL):
            return
        was_away = False
        for _ in range(20):
            is_away = not self.is_overview()
            if is_away and was_away:
                return
            was_away = is_away
            self.call(GNOME_SHELL, GNOME_PATH, dbus.PROPERTIES_IFACE, "Set", GNOME_SHELL, "OverviewActive", False)
            time.sleep(0.5)

    def call(self, service, path, interface, method, *arguments):
        try:
            if not self.bus.name_has_owner(service):
                return None
            target = self.bus.get_object(service, path, introspect=False)
            return target.get_dbus_method(method, interface)(*arguments, timeout=PATIENCE)
        except dbus.DBusException:
            return None

    def read(self, service, path, interface, name):
        return self.call(service, path, dbus.PROPERTIES_IFACE, "Get", interface, name)


def output(*command, patience=PATIENCE):
    try:
        result = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, timeout=patience, check=False)
    except (FileNotFoundError, subprocess.TimeoutExpired):
        return ""
    return result.stdout.decode("utf-8", "replace")


def first(pattern, text):
    found = re.search(pattern, text)
    return found.group(1) if found else ""


def changes(before, after):
    """What differs between two snapshots, in words."""
    words = []
    for number, text in after.windows.items():
        if number not in before.windows:
            words.append(f"+window “{text}”")
    for number, text in before.windows.items():
        if number not in after.windows:
            words.append(f"-window “{text}”")
    for name in ("desktop", "showing_desktop", "clipboard", "volume", "muted"):
        old, new = getattr(before, name), getattr(after, name)
        if old != new:
            words.append(f"{name.replace('_', ' ')} {old} → {new}")
    words += [f"+file {name}" for name in sorted(after.files - before.files)]
    words += [f"+view {name}" for name in sorted(after.views - before.views)]
    words += [f"-view {name}" for name in sorted(before.views - after.views)]
    return words

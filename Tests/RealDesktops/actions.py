"""The actions of README's table: what goes before each press, what is to happen, and how that is recognised."""

import re
from dataclasses import dataclass, field
from typing import Callable

COMMAND = 0x100000
CONTROL = 0x40000
TEXT = "words of the probe"
OTHER_TEXT = "from the clipboard"


@dataclass
class Seen:
    """What happened between a press and the moment at which all was quiet again."""

    before: object
    after: object
    # What arrived at the probe, at the player, in the browser; notifications, and the program's warnings.
    probe: list
    played: list
    opened: list
    notices: list
    warnings: list
    # The part of the screen that looks otherwise, once all is over.
    changed: float = 0.0

    def windows(self, pattern):
        """The titles of new windows that match."""
        return [text for number, text in self.after.windows.items()
                if number not in self.before.windows and re.search(pattern, text, re.IGNORECASE)]

    def opened_views(self):
        return self.after.views - self.before.views

    def keys(self):
        return [line["key"] for line in self.probe if "key" in line]

    def buttons(self):
        return [line["button"] for line in self.probe if "button" in line]

    def texts(self):
        return [line["text"] for line in self.probe if "text" in line]


@dataclass
class Action:
    # As it is stored; README's table has the same word.
    name: str
    expected: str
    holds: Callable[[Seen], bool]
    # Further keys of the mapping.
    mapping: dict = field(default_factory=dict)
    # What is done before the press: "select" the probe's text, "copy" another text into the clipboard, "mark" a
    # place of the volume, "right" one desktop to the right.
    prepare: str = ""
    # Seconds that it may take.
    bound: float = 8.0


def key(text):
    return lambda seen: text in seen.keys()


def window(pattern):
    return lambda seen: bool(seen.windows(pattern))


def view(name):
    return lambda seen: name in seen.opened_views()


def notice(pattern):
    return lambda seen: any(re.search(pattern, text) for text in seen.notices)


def arrow(text, holds):
    return {"expected": text, "holds": holds}


ANY_WINDOW = r"."

MISSION_CONTROL = {
    "xfce": arrow("the list of all windows", window(r"xfdesktop")),
    "mate": arrow("rofi's list, or a notification that names it",
                  lambda seen: bool(seen.windows("rofi")) or notice("rofi")(seen)),
    "kde": arrow("the overview", view("overview")),
    "gnome": arrow("the overview", view("overview")),
}
APP_EXPOSE = {
    "xfce": MISSION_CONTROL["xfce"],
    "mate": MISSION_CONTROL["mate"],
    "kde": arrow("the application's windows", view("windowview")),
    "gnome": MISSION_CONTROL["gnome"],
}
LAUNCHPAD = {
    "xfce": arrow("the application finder", window(r"appfinder|whisker|xfce4-panel|wrapper")),
    "mate": arrow("the main menu", window(r"mate-panel")),
    "kde": arrow("the application launcher", window(r"plasmashell")),
    "gnome": arrow("the overview", view("overview")),
}
FILES = {"xfce": "thunar", "mate": "caja", "kde": "dolphin", "gnome": "nautilus"}
EDITOR = {"xfce": "mousepad", "mate": "pluma", "kde": "kwrite|kate", "gnome": "text-?editor"}
SCREENSHOT = {"xfce": "screenshooter", "mate": "screenshot", "kde": "spectacle", "gnome": ""}
EMOJI = {
    "xfce": arrow("the text field's own choice", lambda seen: any("emoji" in line for line in seen.probe)),
    "kde": arrow("the emoji selector", window(r"emojier")),
}


def screenshot(desktop, needs_area=False):
    if desktop == "gnome":
        if needs_area:
            # It is drawn by the shell itself, which darkens everything but the area.
            return arrow("the shell's tool", lambda seen: seen.changed > 0.3)
        return arrow("a file", lambda seen: bool(seen.after.files - seen.before.files))
    program = SCREENSHOT[desktop]
    if needs_area:
        # The area is chosen with a cross under the pointer; the picture shows it where there is no window.
        return arrow("the desktop's tool for an area", lambda seen: bool(seen.windows(program))
                     or program[:15] in seen.after.programs)
    return arrow("the desktop's tool", lambda seen: bool(seen.windows(program))
                 or any(re.search(r"\.png$", name) for name in seen.after.files - seen.before.files))


def volume_rose(seen):
    return percent(seen.after.volume) > percent(seen.before.volume)


def volume_fell(seen):
    return percent(seen.after.volume) < percent(seen.before.volume)


def percent(text):
    return int(text.rstrip("%") or 0)


def shortcut(name, code, modifiers):
    return {name: {"keyCode": code, "modifiersRawValue": modifiers, "displayString": "⌃K"}}


def actions_of(desktop):
    """The table of one desktop, in README's order; the lock comes last, for nothing can be pressed behind it."""
    plain = [
        Action("Ninguna", "nothing", lambda seen: not seen.keys() and not seen.windows(ANY_WINDOW)),
        Action("Atrás", "Alt+Left arrives", key("Alt+Left")),
        Action("Adelante", "Alt+Right arrives", key("Alt+Right")),
        Action("Mission Control", **MISSION_CONTROL[desktop]),
        Action("App Exposé", **APP_EXPOSE[desktop]),
        Action("Launchpad", **LAUNCHPAD[desktop]),
        Action("Abrir carpeta", "a window of the file manager", window(FILES[desktop]),
               mapping={"folderPath": "/usr/share"}, bound=15.0),
        Action("Mostrar Escritorio", "the desktop is shown", lambda seen: seen.after.showing_desktop),
        Action("Mover escritorio derecha", "one desktop to the right",
               lambda seen: seen.after.desktop == seen.before.desktop + 1),
        Action("Mover escritorio izquierda", "one desktop to the left",
               lambda seen: seen.after.desktop == seen.before.desktop - 1, prepare="right"),
        Action("Copiar", "the text is in the clipboard", lambda seen: seen.after.clipboard == TEXT, prepare="select"),
        Action("Pegar", "the clipboard is in the text", lambda seen: OTHER_TEXT in seen.texts(), prepare="copy"),
        Action("Cortar", "the text is in the clipboard and gone",
               lambda seen: seen.after.clipboard == TEXT and "" in seen.texts(), prepare="select"),
        Action("Deshacer", "Control+Z arrives", key("Control+Z")),
        Action("Captura Completa", **screenshot(desktop)),
        Action("Captura de Área", **screenshot(desktop, needs_area=True)),
        Action("Volumen +", "the volume rises", volume_rose),
        Action("Volumen -", "the volume falls", volume_fell),
        Action("Silencio", "the sound is muted", lambda seen: seen.after.muted == "yes"),
        Action("Play/Pause", "the player is asked", lambda seen: bool(seen.played)),
        Action("Open Explorer", "a window of the file manager", window(FILES[desktop]), bound=15.0),
        Action("New Note", "a window of the editor, and nothing typed elsewhere",
               lambda seen: bool(seen.windows(EDITOR[desktop])) and not seen.keys(), bound=15.0),
        Action("Emoji", **EMOJI.get(desktop, EMOJI["xfce"])),
        Action("Iniciar dictado", "the recorded shortcut arrives", key("Control+K"),
               mapping=shortcut("dictationShortcut", 40, CONTROL)),
        Action("Explore AI", "an address for the browser",
               lambda seen: any(line.startswith("https://") for line in seen.opened)),
        Action("Screenshot", **screenshot(desktop, needs_area=desktop == "gnome")),
        Action("Smart Button", "the radial menu", window(r"trelvan")),
        Action("Click Izquierdo", "a click of the left button", lambda seen: seen.buttons() == [1]),
        Action("Click Derecho", "a click of the right button", lambda seen: seen.buttons() == [3]),
        Action("Click Medio", "a click of the middle button", lambda seen: seen.buttons() == [2]),
        Action("Atajo Personalizado", "the recorded shortcut arrives", key("Control+K"),
               mapping=shortcut("shortcut", 40, CONTROL)),
        Action("Abrir Aplicación", "the application's window", window(r"xterm"),
               mapping={"appPath": "/usr/share/applications/debian-xterm.desktop"}),
    ]
    return plain + [Action("Lock Workstation", "the screen is locked", view("locked"), bound=10.0)]

"""Runs a desktop's session with Trelvan on it, presses a hardware button for each action and writes down what came of
it. Inside the session bus that `stage.py` makes.

    driver.py DESKTOP FOLDER ONLY

ONLY is a regular expression: the actions whose names it matches are pressed. FOLDER/trelvan is the program;
FOLDER/result.json and FOLDER/pictures are what is left behind.
"""

import json
import os
import re
import signal
import subprocess
import sys
import time
from pathlib import Path

from actions import OTHER_TEXT, TEXT, Seen, actions_of
from desktops import DESKTOPS
from devices import BUTTONS, ESCAPE, HEIGHT, WIDTH, Device
from observer import Observer, changes, output

# The number of an extra button is that of X less this.
FIRST_EXTRA = 5
QUIET = 1.2


class Lines:
    """The lines that a growing file has got since they were last taken."""

    def __init__(self, path):
        self.path = Path(path)
        self.position = 0

    def all(self):
        if not self.path.exists():
            return []
        return self.path.read_text(errors="replace").split("\n")[:-1]

    def take(self):
        lines = self.all()[self.position:]
        self.position += len(lines)
        return lines

    def peek(self):
        return self.all()[self.position:]


class Driver:
    def __init__(self, desktop, folder):
        self.desktop = desktop
        self.folder = folder
        self.logs = folder / "logs"
        self.actions = actions_of(desktop.name)
        self.trackball = Device(folder / "trackball")
        self.keyboard = Device(folder / "keyboard")
        self.probe_lines = Lines(self.logs / "probe")
        self.played = Lines(self.logs / "player")
        self.opened = Lines(folder / "opened")
        self.notified = Lines(self.logs / "notifications")
        self.program_log = Lines(self.logs / "trelvan")

    # Bringing up

    def start(self, name, *command, **options):
        log = open(self.logs / name, "ab")
        return subprocess.Popen([str(word) for word in command], stdout=log,
                                stderr=options.pop("stderr", log), cwd=self.folder, **options)

    def bring_up(self):
        suite = Path(__file__).parent
        for schema, key, value in self.desktop.settings:
            output("gsettings", "set", schema, key, value, patience=20.0)
        session = self.start("session", *self.desktop.command, stdin=subprocess.DEVNULL)
        self.observer = Observer(os.environ["HOME"])
        self.wait_for_session(session)
        if self.desktop.service:
            self.observer.wait_for_overview()
        self.shell = set(self.observer.processes().values())
        self.start("notifications", "dbus-monitor", "--session",
                   "interface='org.freedesktop.Notifications',member='Notify'", stdin=subprocess.DEVNULL)
        self.start("player", "/usr/bin/python3", "-u", suite / "player.py", stdin=subprocess.DEVNULL)
        with open(self.logs / "probe.errors", "ab") as errors:
            self.probe = self.start("probe", "/usr/bin/python3", suite / "probe.py",
                                    stdin=subprocess.PIPE, stderr=errors, text=True)
        self.start_program()
        self.probe_window = self.wait_for_window("Probe")
        time.sleep(2)

    def wait_for_session(self, session, bound=150):
        """Until a window manager and the shell's windows are there and nothing new comes."""
        end = time.monotonic() + bound
        quiet_since, last = None, None
        while time.monotonic() < end:
            if session.poll() is not None:
                raise RuntimeError(f"the session ended with {session.returncode}: see its log")
            names = " ".join(self.observer.windows()[0].values()).lower()
            has_manager = bool(len(self.observer.property(self.observer.root, "_NET_SUPPORTING_WM_CHECK")))
            is_shell = all(name in names for name in self.desktop.ready)
            if self.desktop.service:
                is_shell = is_shell and self.observer.bus.name_has_owner(self.desktop.service)
            if has_manager and is_shell:
                if names != last:
                    quiet_since, last = time.monotonic(), names
                elif time.monotonic() - quiet_since > 5:
                    return
            time.sleep(0.3)
        raise RuntimeError(f"the session did not come up; its windows: {names or 'none'}")

    def start_program(self):
        mappings = [{"buttonNumber": 0, "buttonLabel": "", "action": "Click Izquierdo"},
                    {"buttonNumber": 1, "buttonLabel": "", "action": "Click Derecho"}]
        for index, action in enumerate(self.actions):
            mappings.append({"buttonNumber": 3 + index, "buttonLabel": "", "action": action.name, **action.mapping})
        entries = [{"id": f"00000000-0000-4000-8000-00000000000{number}", "name": f"Terminal {number}",
                    "path": "/usr/share/applications/debian-xterm.desktop", "kind": "application"}
                   for number in range(1, 5)]
        profiles = [{"name": "Desktop", "mappings": mappings, "smartButton": {"isEnabled": True, "apps": entries}}]
        settings = self.folder / "settings"
        settings.mkdir()
        (settings / "settings.json").write_text(
            json.dumps({"trackball_profiles": {"utf8": json.dumps(profiles)}}))
        self.program = self.start("trelvan", self.folder / "trelvan", "--config", settings, stdin=subprocess.DEVNULL)
        self.wait(lambda: any("EventMonitor iniciado" in line for line in self.program_log.peek()), "Trelvan", 20)

    def wait_for_window(self, title):
        def found():
            for number, text in self.observer.windows()[0].items():
                if text.endswith(f": {title}"):
                    return number
            return None

        self.wait(found, f"the window {title}", 40)
        return found()

    @staticmethod
    def wait(condition, what, bound):
        end = time.monotonic() + bound
        while not condition():
            if time.monotonic() > end:
                raise RuntimeError(f"{what} did not come up")
            time.sleep(0.1)

    # Each action

    def tell_probe(self, command):
        seen = len(self.probe_lines.all())
        self.probe.stdin.write(command + "\n")
        self.probe.stdin.flush()
        self.wait(lambda: any('"done"' in line for line in self.probe_lines.all()[seen:]), "the probe", 10)

    def move_to(self, x, y):
        """Straight there: on the way through a corner a desktop would act."""
        place = self.observer.root.query_pointer()
        self.trackball.move(x - place.root_x, y - place.root_y)

    def prepare(self, action):
        self.observer.leave_overview()
        self.move_to(660, 430)
        self.tell_probe("text " + (TEXT if action.prepare != "copy" else ""))
        self.observer.ask_root("_NET_ACTIVE_WINDOW", 2, 0, 0, window=self.probe_window)
        active = lambda: self.observer.windows()[1].endswith(": Probe")  # noqa: E731
        for _ in range(30):
            if active():
                break
            time.sleep(0.1)
        if action.prepare == "select":
            self.tell_probe("select")
        if action.prepare in ("copy", "select"):
            text = OTHER_TEXT if action.prepare == "copy" else "nothing yet"
            subprocess.run(["xclip", "-i", "-selection", "clipboard"], input=text, text=True, check=True,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        if action.prepare == "right":
            self.observer.ask_root("_NET_CURRENT_DESKTOP", 1)
        time.sleep(0.5)

    def press(self, index, action):
        self.prepare(action)
        before = self.observer.snapshot()
        pictures = [self.folder / "pictures" / f"{index:02}-{slug(action.name)}-{when}.png"
                    for when in ("before", "after")]
        take_picture(pictures[0])
        for lines in (self.probe_lines, self.played, self.opened, self.notified, self.program_log):
            lines.take()
        self.trackball.click(3 + index + FIRST_EXTRA)
        end = time.monotonic() + action.bound
        time.sleep(0.4)
        seen = self.gather(before)
        while not action.holds(seen) and time.monotonic() < end:
            time.sleep(0.3)
            seen = self.gather(before)
        time.sleep(QUIET)
        seen = self.gather(before)
        take_picture(pictures[1])
        seen.changed = changed_part(*pictures)
        holds = action.holds(seen)
        self.clear_up(before)
        return {"action": action.name, "expected": action.expected, "seen": self.words(seen),
                "verdict": "as said" if holds else "DIFFERENT"}

    def gather(self, before):
        return Seen(before=before, after=self.observer.snapshot(),
                    probe=[json.loads(line) for line in self.probe_lines.peek()], played=self.played.peek(),
                    opened=self.opened.peek(), notices=self.notices(),
                    warnings=[line for line in self.program_log.peek() if "WARN" in line or "ERROR" in line])

    def notices(self):
        """The texts of the notifications posted by this program."""
        texts = [line.strip()[8:-1] for line in self.notified.peek() if line.strip().startswith('string "')]
        return texts if "Trelvan" in texts else []

    @staticmethod
    def words(seen):
        words = changes(seen.before, seen.after)
        words += [f"key {name}" for name in seen.keys()]
        words += [f"button {number}" for number in seen.buttons()]
        words += [f"text “{text}”" for text in seen.texts()]
        words += ["emoji choice"] * sum("emoji" in line for line in seen.probe)
        words += [f"player {line}" for line in seen.played] + [f"address {line}" for line in seen.opened]
        words += [f"notification “{text}”" for text in seen.notices if len(text) > 24]
        words += [f"log: {line.split('] ', 2)[-1]}" for line in seen.warnings]
        if not words and seen.changed > 0.05:
            words = [f"{seen.changed:.0%} of the screen looks otherwise"]
        return "; ".join(words) or "nothing"

    def clear_up(self, before):
        """Back to where it was: menus and views closed, programs that were started ended."""
        for _ in range(2):
            self.keyboard.key(ESCAPE)
            time.sleep(0.3)
        processes = self.observer.processes()
        for number, process in processes.items():
            if number in before.windows:
                continue
            self.observer.close_window(number)
        time.sleep(0.6)
        for number, process in self.observer.processes().items():
            if number not in before.windows and process not in self.shell and process != self.program.pid:
                try:
                    os.kill(process, signal.SIGKILL)
                except ProcessLookupError:
                    pass
        if self.observer.number("_NET_SHOWING_DESKTOP", 0):
            self.observer.ask_root("_NET_SHOWING_DESKTOP", 0)
        if before.desktop >= 0:
            self.observer.ask_root("_NET_CURRENT_DESKTOP", 0)
        output("pactl", "set-sink-mute", "speaker", "0")
        output("pactl", "set-sink-volume", "speaker", "50%")
        time.sleep(0.5)

    def run(self, only):
        self.bring_up()
        rows = []
        for index, action in enumerate(self.actions):
            if not 3 + index + FIRST_EXTRA <= BUTTONS:
                raise RuntimeError("the trackball has too few buttons")
            if not re.search(only, action.name):
                continue
            try:
                rows.append(self.press(index, action))
            except Exception as failure:  # noqa: BLE001: one action's failure is a row of its own
                rows.append({"action": action.name, "expected": action.expected, "seen": f"failed: {failure!r}",
                             "verdict": "FAILED"})
            print(f"   {rows[-1]['action']}: {rows[-1]['verdict']}: {rows[-1]['seen']}", flush=True)
        return rows


def take_picture(path):
    # Written fast rather than small.
    output("import", "-silent", "-window", "root", "-quality", "11", str(path), patience=20.0)


def changed_part(before, after):
    """The part of the screen that looks otherwise, from 0 to 1."""
    result = subprocess.run(["compare", "-metric", "AE", "-fuzz", "5%", before, after, "null:"], capture_output=True,
                            text=True, check=False)
    try:
        return float(result.stderr.split()[0]) / (WIDTH * HEIGHT)
    except (IndexError, ValueError):
        return 0.0


def slug(name):
    plain = name.translate(str.maketrans("áéíóúÁ", "aeiouA"))
    return "".join(letter if letter.isalnum() else "-" for letter in plain.lower())


def main():
    desktop, folder = DESKTOPS[sys.argv[1]], Path(sys.argv[2])
    driver = Driver(desktop, folder)
    result = {"desktop": desktop.name, "title": desktop.title, "screen": f"{WIDTH}x{HEIGHT}",
              "version": output(*desktop.version).strip().split("\n")[0]}
    try:
        result["rows"] = driver.run(sys.argv[3])
    except Exception as failure:  # noqa: BLE001: said in the report
        take_picture(folder / "pictures" / "failure.png")
        result["failure"] = str(failure)
    (folder / "result.json").write_text(json.dumps(result, ensure_ascii=False, indent=1))
    return 0 if "failure" not in result else 1


if __name__ == "__main__":
    sys.exit(main())

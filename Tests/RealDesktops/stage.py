"""What a desktop's session stands on: an X server of its own, a system bus with a stand-in for the login manager, a
sound server with a null sink, and folders of its own. Runs as the ordinary user; `driver.py` then runs inside a
session bus of its own.

    stage.py DESKTOP FOLDER ONLY
"""

import ctypes
import os
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

import dbus
import dbus.bus

from devices import server_configuration
from desktops import DESKTOPS

PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36

SYSTEM_BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path={socket}</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""

LOGIN_MANAGER = "org.freedesktop.login1"
MOCK = "org.freedesktop.DBus.Mock"
SESSION = "c1"

HANDLER = """[Desktop Entry]
Type=Application
Name=Address recorder
Exec={command} %u
MimeType=x-scheme-handler/https;x-scheme-handler/http;
NoDisplay=true
"""


class Stage:
    """Everything it starts ends with `close`, orphans included."""

    def __init__(self, desktop, folder):
        # Orphans come to this process, so that none outlives it unseen.
        library = ctypes.CDLL(None)
        library.prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        # And it ends itself, cleanly, with the one that started it.
        library.prctl(PR_SET_PDEATHSIG, signal.SIGTERM, 0, 0, 0)
        self.desktop = desktop
        self.folder = folder
        self.logs = folder / "logs"
        self.processes = []
        self.environment = self._make_folders()

    def _make_folders(self):
        home = self.folder / "home"
        runtime = self.folder / "run"
        for path in (self.logs, home, runtime, self.folder / "pictures"):
            path.mkdir(parents=True, exist_ok=True)
        runtime.chmod(0o700)
        # What is opened in a browser is written down, for none is installed.
        opened = self.folder / "opened"
        recorder = self.folder / "record-address"
        recorder.write_text(f"#!/bin/sh\nprintf '%s\\n' \"$1\" >> '{opened}'\n")
        recorder.chmod(0o755)
        applications = home / ".local/share/applications"
        applications.mkdir(parents=True)
        (applications / "record-address.desktop").write_text(HANDLER.format(command=recorder))
        (home / ".config").mkdir()
        (home / ".config/mimeapps.list").write_text(
            "[Default Applications]\n"
            + "".join(f"x-scheme-handler/{scheme}=record-address.desktop\n" for scheme in ("http", "https"))
        )
        for name, text in self.desktop.files.items():
            path = home / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text.replace("{folder}", str(self.folder)))
        return {
            # All of them: some programs ask the system for the home folder where these are not set.
            "HOME": str(home),
            "XDG_CONFIG_HOME": str(home / ".config"),
            "XDG_DATA_HOME": str(home / ".local/share"),
            "XDG_STATE_HOME": str(home / ".local/state"),
            "XDG_CACHE_HOME": str(home / ".cache"),
            "USER": os.environ.get("USER", "tester"),
            "LOGNAME": os.environ.get("USER", "tester"),
            "SHELL": "/bin/sh",
            "LANG": "C.UTF-8",
            "PATH": "/usr/local/bin:/usr/bin:/bin:/usr/games",
            "XDG_RUNTIME_DIR": str(runtime),
            "XDG_SESSION_TYPE": "x11",
            "XDG_SESSION_ID": SESSION,
            "XDG_CURRENT_DESKTOP": self.desktop.current_desktop,
            "XDG_SESSION_DESKTOP": self.desktop.name,
            "XDG_DATA_DIRS": "/usr/local/share:/usr/share",
            "XDG_CONFIG_DIRS": "/etc/xdg",
            "PULSE_SERVER": f"unix:{runtime}/pulse/native",
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self.folder}/system-bus",
            "LIBGL_ALWAYS_SOFTWARE": "1",
            "NO_AT_BRIDGE": "1",
            **self.desktop.environment,
        }

    def start(self, name, *arguments, **options):
        log = open(self.logs / name, "ab")
        process = subprocess.Popen(
            [str(argument) for argument in arguments],
            env=self.environment,
            cwd=self.folder,
            stdin=subprocess.DEVNULL,
            stdout=log,
            stderr=log,
            **options,
        )
        self.processes.append(process)
        return process

    def start_server(self):
        (self.folder / "x.conf").write_text(server_configuration(self.folder))
        reading, writing = os.pipe()
        # From the folder of x.conf, because an ordinary user may not name an absolute path; a seat of its own
        # keeps the server away from the machine's screens and devices.
        self.start(
            "server",
            "/usr/lib/xorg/Xorg",
            *("-config", "x.conf", "-configdir", "none", "-logfile", self.folder / "server.log", "-noreset"),
            *("-seat", "seat9", "-nolisten", "tcp", "-displayfd", writing),
            pass_fds=[writing],
        )
        os.close(writing)
        with os.fdopen(reading) as ready:
            number = ready.readline().strip()
        if not number:
            raise RuntimeError("the X server did not start:\n" + (self.logs / "server").read_text())
        self.environment["DISPLAY"] = f":{number}"

    def start_system_bus(self):
        configuration = self.folder / "system-bus.conf"
        configuration.write_text(SYSTEM_BUS.format(socket=self.folder / "system-bus"))
        self.start("system-bus", "dbus-daemon", "--config-file", configuration, "--nofork")
        wait_for(lambda: (self.folder / "system-bus").exists(), "the system bus")
        self.start_login_manager()

    def start_login_manager(self):
        """Stand-ins for the login manager, with this session, and for GNOME's display manager: its shell locks only
        where that runs."""
        mock = ("/usr/bin/python3", "-m", "dbusmock", "--system")
        manager = "org.gnome.DisplayManager"
        self.start("login-manager", *mock, "--template", "logind")
        self.start("display-manager", *mock, manager, "/org/gnome/DisplayManager/Manager", f"{manager}.Manager")
        bus = dbus.bus.BusConnection(self.environment["DBUS_SYSTEM_BUS_ADDRESS"])
        wait_for(lambda: bus.name_has_owner(LOGIN_MANAGER) and bus.name_has_owner(manager), "the login manager")
        login = bus.get_object(LOGIN_MANAGER, "/org/freedesktop/login1")
        login.AddSession(SESSION, "seat0", dbus.UInt32(os.getuid()), "tester", True, dbus_interface=MOCK)
        # GNOME's shell asks for its own user's session in this way.
        session = dbus.Struct((SESSION, dbus.ObjectPath(f"/org/freedesktop/login1/session/{SESSION}")))
        login.AddObject("/org/freedesktop/login1/user/self", f"{LOGIN_MANAGER}.User", {"Display": session}, [],
                        dbus_interface=MOCK)
        login.AddObject("/org/freedesktop/login1/session/auto", f"{LOGIN_MANAGER}.Session", {"Id": SESSION},
                        [("Lock", "", "", "")], dbus_interface=MOCK)
        display = bus.get_object(manager, "/org/gnome/DisplayManager/Manager")
        display.AddProperty(f"{manager}.Manager", "Version", "43.0", dbus_interface=MOCK)

    def start_sound(self):
        self.start(
            "sound",
            *("pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disable-shm=yes"),
            *("--use-pid-file=no", "-L", "module-native-protocol-unix"),
            *("-L", "module-null-sink sink_name=speaker"),
        )
        wait_for(lambda: self.run("pactl", "set-sink-volume", "speaker", "50%") == 0, "the sound server")

    def run(self, *arguments):
        return subprocess.run(
            arguments, env=self.environment, cwd=self.folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL
        ).returncode

    def close(self):
        for number in (signal.SIGTERM, signal.SIGKILL):
            end = time.monotonic() + 3
            while time.monotonic() < end:
                reap()
                remaining = descendants(os.getpid())
                if not remaining:
                    return
                for process in remaining:
                    try:
                        os.kill(process, number)
                    except ProcessLookupError:
                        pass
                time.sleep(0.2)


def wait_for(condition, what, bound=20):
    end = time.monotonic() + bound
    while not condition():
        if time.monotonic() > end:
            raise RuntimeError(f"{what} did not come up")
        time.sleep(0.1)


def reap():
    try:
        while os.waitpid(-1, os.WNOHANG)[0] != 0:
            pass
    except ChildProcessError:
        pass


def descendants(parent):
    """The processes below one, whoever ended between."""
    children = {}
    for entry in Path("/proc").iterdir():
        if not entry.name.isdigit():
            continue
        try:
            fields = (entry / "stat").read_text().rsplit(")", 1)[1].split()
        except OSError:
            continue
        children.setdefault(int(fields[1]), []).append(int(entry.name))
    found, waiting = [], [parent]
    while waiting:
        for child in children.get(waiting.pop(), []):
            found.append(child)
            waiting.append(child)
    return found


def main():
    name, folder, only = sys.argv[1], Path(sys.argv[2]), sys.argv[3]
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    stage = Stage(DESKTOPS[name], folder)
    try:
        stage.start_server()
        stage.start_system_bus()
        stage.start_sound()
        driver = Path(__file__).with_name("driver.py")
        command = ["dbus-run-session", "--", "/usr/bin/python3", driver, name, folder, only]
        with open(stage.logs / "session-bus", "ab") as log:
            return subprocess.run(command, env=stage.environment, cwd=folder, stderr=log, check=False).returncode
    finally:
        stage.close()
        shutil.rmtree(folder / "run", ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main())

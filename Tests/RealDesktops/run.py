"""Brings up real desktops one after the other, presses a button for every action and prints what came of it.

    run.py --packages DESKTOP               the Debian packages that the desktop needs
    run.py [--only REGEX] PROGRAM ARTIFACTS DESKTOP...
                                            DESKTOP is xfce, mate, kde or gnome; only the actions that match

As root it works through an ordinary user made for it, for no desktop is meant for root. The status is 1 when an
action did other than README says, or a desktop did not come up.
"""

import json
import os
import pwd
import shutil
import signal
import subprocess
import sys
import tempfile
from pathlib import Path

from desktops import COMMON_PACKAGES, DESKTOPS

TESTER = "trelvan-tester"
# For one desktop, in seconds: each action has its own bound.
BOUND = 900


class Tester:
    """The user that the desktops run as: whoever this is, or one that exists only meanwhile."""

    def __init__(self):
        self.is_made = os.geteuid() == 0
        if not self.is_made:
            self.entry = pwd.getpwuid(os.geteuid())
            return
        subprocess.run(["useradd", "--no-create-home", "--shell", "/bin/sh", TESTER], check=False,
                       stderr=subprocess.DEVNULL)
        self.entry = pwd.getpwnam(TESTER)

    def command(self, *words):
        if not self.is_made:
            return list(words)
        return ["setpriv", "--reuid", str(self.entry.pw_uid), "--regid", str(self.entry.pw_gid), "--clear-groups",
                "--reset-env", *words]

    def own(self, folder):
        if self.is_made:
            for path in [folder, *folder.rglob("*")]:
                os.chown(path, self.entry.pw_uid, self.entry.pw_gid)

    def close(self):
        if self.is_made:
            subprocess.run(["userdel", TESTER], check=False, stderr=subprocess.DEVNULL)


def make_socket_folder():
    """The folder of the X servers' sockets, which only root makes as it is to be."""
    folder = Path("/tmp/.X11-unix")
    if os.geteuid() == 0 and not folder.exists():
        folder.mkdir()
        folder.chmod(0o1777)


def run_desktop(name, program, artifacts, tester, only):
    folder = Path(tempfile.mkdtemp(prefix=f"trelvan-{name}-", dir="/tmp"))
    try:
        shutil.copy(program, folder / "trelvan")
        shutil.copytree(Path(__file__).parent, folder / "suite", ignore=shutil.ignore_patterns("__pycache__"))
        tester.own(folder)
        command = ("/usr/bin/python3", str(folder / "suite/stage.py"), name, str(folder), only)
        stage = subprocess.Popen(tester.command(*command), cwd=folder, stdin=subprocess.DEVNULL)
        try:
            stage.wait(BOUND)
        except subprocess.TimeoutExpired:
            stage.send_signal(signal.SIGTERM)
            stage.wait(30)
        return collect(name, folder, artifacts / name)
    finally:
        shutil.rmtree(folder, ignore_errors=True)


def collect(name, folder, place):
    shutil.rmtree(place, ignore_errors=True)
    place.mkdir(parents=True)
    for part in ("pictures", "logs"):
        if (folder / part).is_dir():
            shutil.copytree(folder / part, place / part)
    for part in ("result.json", "server.log"):
        if (folder / part).is_file():
            shutil.copy(folder / part, place / part)
    try:
        return json.loads((folder / "result.json").read_text())
    except (OSError, ValueError):
        return {"desktop": name, "title": DESKTOPS[name].title, "version": "", "failure": "no result was left behind"}


def print_table(result):
    print(f"\n{result['title']} ({result['version'] or 'version unknown'})")
    if "failure" in result:
        print(f"  did not come up: {result['failure']}")
    rows = result.get("rows", [])
    heads = {"action": "action", "expected": "expected", "verdict": "verdict", "seen": "seen"}
    widths = {head: max([len(head)] + [len(row[head]) for row in rows]) for head in ("action", "expected", "verdict")}
    for row in [heads] + rows:
        print("  " + "  ".join(row[head].ljust(widths[head]) for head in widths) + "  " + row["seen"])


def main(arguments):
    if len(arguments) == 2 and arguments[0] == "--packages" and arguments[1] in DESKTOPS:
        print(*COMMON_PACKAGES, *DESKTOPS[arguments[1]].packages.split(), sep="\n")
        return 0
    only = ""
    if len(arguments) > 2 and arguments[0] == "--only":
        only, arguments = arguments[1], arguments[2:]
    if len(arguments) < 3 or any(name not in DESKTOPS for name in arguments[2:]):
        print(__doc__, file=sys.stderr)
        return 2
    program, artifacts = Path(arguments[0]), Path(arguments[1])
    print("On the system bus, the login manager and GNOME's display manager are stand-ins (python3-dbusmock).",
          flush=True)
    make_socket_folder()
    tester = Tester()
    try:
        results = [run_desktop(name, program, artifacts, tester, only) for name in arguments[2:]]
    finally:
        tester.close()
    for result in results:
        print_table(result)
    rows = [row for result in results for row in result.get("rows", [])]
    good = sum(row["verdict"] == "as said" for row in rows)
    bad = len(rows) - good + sum("failure" in result for result in results)
    print(f"\n{good} as said, {bad} different")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

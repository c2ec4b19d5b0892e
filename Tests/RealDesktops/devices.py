"""The private X server's hardware: what its configuration says, and the devices' side of the inputtest protocol."""

import socket
import struct
import time

WIDTH, HEIGHT = 1440, 900
BUTTONS = 64

MOTION, BUTTON, KEY = 2, 4, 5
CLIENT_VERSION, WAIT_FOR_SYNC = 0, 1
AXES = 64

ESCAPE = 9
RETURN = 36

SERVER_CONFIGURATION = """
Section "ServerFlags"
    Option "AutoAddGPU" "false"
    Option "DontVTSwitch" "true"
    Option "BlankTime" "0"
    Option "StandbyTime" "0"
    Option "SuspendTime" "0"
    Option "OffTime" "0"
EndSection
Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 32768
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5-1000
    VertRefresh 5-200
    Modeline "{width}x{height}" 106.50 1440 1528 1672 1904 900 903 909 934 -hsync +vsync
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    Monitor "monitor"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Modes "{width}x{height}"
        Virtual {width} {height}
    EndSubSection
EndSection
Section "ServerLayout"
    Identifier "layout"
    Screen "screen"
    InputDevice "trackball" "CorePointer"
    InputDevice "keyboard" "CoreKeyboard"
EndSection
"""

DEVICE = """
Section "InputDevice"
    Identifier "{name}"
    Driver "inputtest"
    Option "SocketPath" "{folder}/{name}"
    Option "DeviceType" "{kind}"
    Option "PointerButtonCount" "{buttons}"
    Option "AccelerationScheme" "none"
EndSection
"""


def server_configuration(folder):
    """The server's configuration file, with the devices' sockets in the folder."""
    text = SERVER_CONFIGURATION.format(width=WIDTH, height=HEIGHT)
    for name, kind in (("trackball", "Pointer"), ("keyboard", "Keyboard")):
        text += DEVICE.format(name=name, kind=kind, folder=folder, buttons=BUTTONS)
    return text


class Device:
    """One device, driven as its hardware would drive it. Every call returns when the server has processed it."""

    def __init__(self, path):
        self.connection = socket.socket(socket.AF_UNIX)
        self.connection.settimeout(10)
        end = time.monotonic() + 10
        while True:
            try:
                self.connection.connect(str(path))
                break
            except OSError:
                if time.monotonic() > end:
                    raise
                time.sleep(0.05)
        self._send(CLIENT_VERSION, struct.pack("<HH", 1, 1))
        self._receive(12)

    def _send(self, kind, body=b""):
        self.connection.sendall(struct.pack("<II", 8 + len(body), kind) + body)

    def _receive(self, size):
        while size > 0:
            part = self.connection.recv(size)
            if not part:
                raise ConnectionError("the device was taken away")
            size -= len(part)

    def _settle(self):
        self._send(WAIT_FOR_SYNC)
        self._receive(8)

    @staticmethod
    def _valuators(values=()):
        mask = (1 << len(values)) - 1
        padded = list(values) + [0.0] * (2 * AXES - len(values))
        return struct.pack(f"<I8s4x{2 * AXES}d", 0, mask.to_bytes(8, "little"), *padded)

    def move(self, right, down):
        self._send(MOTION, struct.pack("<I4x", 0) + self._valuators([float(right), float(down)]))
        self._settle()

    def button(self, number, down):
        self._send(BUTTON, struct.pack("<iiI4x", 0, number, int(down)) + self._valuators())
        self._settle()

    def click(self, number):
        self.button(number, True)
        time.sleep(0.03)
        self.button(number, False)

    def key(self, code):
        for down in (1, 0):
            self._send(KEY, struct.pack("<iI", code, down))
            self._settle()

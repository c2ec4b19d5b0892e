"""The desktops that can be brought up: their packages, what starts them, and how each is asked what it shows."""

from dataclasses import dataclass, field

# What every desktop needs beside its own: the driver's libraries, the clipboard, addresses, a terminal to start.
COMMON_PACKAGES = (
    "dbus-x11 python3-xlib python3-dbus python3-dbusmock python3-gi gir1.2-gtk-3.0 xclip xdg-utils xterm "
    "desktop-file-utils at-spi2-core adwaita-icon-theme"
).split()


@dataclass(frozen=True)
class Desktop:
    name: str
    title: str
    # XDG_CURRENT_DESKTOP
    current_desktop: str
    packages: str
    command: tuple
    # The program whose version is the desktop's, and how it is asked.
    version: tuple
    # Windows of the session itself are there when these have one (instance or class, lower case).
    ready: tuple
    # And when the shell has this name on the bus.
    service: str = ""
    environment: dict = field(default_factory=dict)
    # Settings that the session finds, by their path in the home folder; {folder} is that of the run.
    files: dict = field(default_factory=dict)
    # The same for what is set through gsettings.
    settings: tuple = ()


XFCE = Desktop(
    name="xfce",
    title="XFCE",
    current_desktop="XFCE",
    packages=(
        "xfce4 xfce4-session xfwm4 xfdesktop4 xfce4-panel xfce4-settings thunar xfce4-appfinder xfce4-screenshooter "
        "xfce4-notifyd xfce4-pulseaudio-plugin xfce4-terminal mousepad xscreensaver dconf-gsettings-backend"
    ),
    command=("xfce4-session",),
    version=("xfce4-session", "--version"),
    ready=("xfce4-panel", "xfdesktop"),
    environment={"XDG_MENU_PREFIX": "xfce-"},
    files={
        # XFCE's session starts MATE's where that is installed, and it dies at its first lock here.
        ".local/share/dbus-1/services/org.mate.ScreenSaver.service": (
            "[D-BUS Service]\nName=org.mate.ScreenSaver\nExec=/bin/false\n"
        ),
        ".config/autostart/xscreensaver.desktop": (
            "[Desktop Entry]\nType=Application\nName=XScreenSaver\nExec=xscreensaver -no-splash\n"
        ),
        ".config/xfce4/helpers.rc": "WebBrowser=record-address\n",
        ".local/share/xfce4/helpers/record-address.desktop": (
            "[Desktop Entry]\nVersion=1.0\nType=X-XFCE-Helper\nName=Address recorder\nStartupNotify=false\n"
            "X-XFCE-Binaries=record-address;\nX-XFCE-Category=WebBrowser\n"
            "X-XFCE-Commands={folder}/record-address;\n"
            'X-XFCE-CommandsWithParameter={folder}/record-address "%s";\n'
        ),
    },
)

MATE = Desktop(
    name="mate",
    title="MATE",
    current_desktop="MATE",
    packages=(
        "mate-desktop-environment-core mate-utils mate-screensaver mate-media mate-notification-daemon pluma "
        "mate-terminal dconf-gsettings-backend"
    ),
    command=("mate-session",),
    version=("mate-session", "--version"),
    ready=("mate-panel", "caja"),
    environment={"XDG_MENU_PREFIX": "mate-"},
)

KDE = Desktop(
    name="kde",
    title="KDE Plasma",
    current_desktop="KDE",
    packages=(
        "plasma-desktop plasma-workspace kwin-x11 kde-spectacle dolphin kwrite konsole plasma-pa kde-cli-tools "
        "libkf5globalaccel-bin qml-module-org-kde-kirigami2 breeze breeze-icon-theme fonts-noto-core "
        "fonts-noto-color-emoji systemsettings"
    ),
    command=("startplasma-x11",),
    version=("plasmashell", "--version"),
    ready=("plasmashell",),
    environment={"XDG_MENU_PREFIX": "plasma-", "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5"},
    files={
        ".config/kwinrc": "[Desktops]\nNumber=4\nRows=1\n\n[Compositing]\nBackend=OpenGL\nEnabled=true\n",
        ".config/startkderc": "[General]\nsystemdBoot=false\n",
        ".config/ksplashrc": "[KSplash]\nEngine=none\nTheme=None\n",
    },
)

GNOME = Desktop(
    name="gnome",
    title="GNOME",
    current_desktop="GNOME",
    packages=(
        "gnome-shell gnome-session gnome-settings-daemon nautilus gnome-text-editor gnome-terminal gjs ibus ibus-gtk3 "
        "dconf-gsettings-backend fonts-noto-color-emoji"
    ),
    command=("gnome-session", "--builtin"),
    version=("gnome-shell", "--version"),
    ready=(),
    service="org.gnome.Shell",
    # The input method, as Debian sets it in every session of GNOME.
    environment={"GNOME_SHELL_SESSION_MODE": "user", "GTK_IM_MODULE": "ibus", "XMODIFIERS": "@im=ibus"},
    # A greeting would cover the first start.
    settings=(("org.gnome.shell", "welcome-dialog-last-shown-version", "99"),),
)

DESKTOPS = {desktop.name: desktop for desktop in (XFCE, MATE, KDE, GNOME)}

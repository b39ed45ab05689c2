"""A desktop session of its own: a screen, buses, a window manager, a tray, and a played logind."""
import os
import re
import shutil
import subprocess
import tempfile

from gi.repository import Gio, GLib

from . import processes
from .waiting import wait_until

TRAY_HEIGHT = 28


class Session:
    """Ends with `end`. Tests may share one: each starts its own program with its own home."""

    def __init__(self, size=(1600, 1000), scale=1, has_tray=True):
        """The size is told in pixels of a screen that is not scaled."""
        self.scale = scale
        self.size = (size[0] * scale, size[1] * scale)
        self.folder = new_folder()
        self.environment = self._plain_environment()
        self._children = []
        try:
            self._start(has_tray)
        except BaseException:
            self.end()
            raise

    def end(self):
        for child in reversed(self._children):
            child.kill()
            child.wait()
        processes.end_all_descendants()
        shutil.rmtree(self.folder, ignore_errors=True)

    def _plain_environment(self):
        """What the machine's own session says is not for us."""
        kept = ("PATH", "LANG", "LC_ALL", "ASAN_OPTIONS", "UBSAN_OPTIONS")
        environment = {name: os.environ[name] for name in kept if name in os.environ}
        home = os.path.join(self.folder, "session-home")
        runtime = os.path.join(self.folder, "runtime")
        os.mkdir(home)
        os.mkdir(runtime, 0o700)
        environment.update(HOME=home, XDG_RUNTIME_DIR=runtime, XDG_SESSION_TYPE="x11",
                           NO_AT_BRIDGE="1", GTK_A11Y="none")
        return environment

    def _start(self, has_tray):
        self._start_screen()
        session_bus = self._start_bus("session")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = session_bus
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self._start_bus("system")
        self.system_bus = connection(self.environment["DBUS_SYSTEM_BUS_ADDRESS"])
        self.logind = self.run([os.environ["MOCK_LOGIND"]], stdin=subprocess.PIPE,
                               stdout=subprocess.PIPE, text=True)
        if self.logind.stdout.readline() != "ready\n":
            raise RuntimeError("mock-logind does not answer")
        self._start_window_manager()
        self.has_tray = has_tray
        if has_tray:
            self._start_tray()
        self.accessibility_bus = self._start_accessibility(session_bus)

    def run(self, command, **options):
        """A program that ends with the session. What it says is not kept, unless asked for."""
        options.setdefault("stdout", subprocess.DEVNULL)
        options.setdefault("stderr", subprocess.DEVNULL)
        child = processes.start(command, self.environment, **options)
        self._children.append(child)
        return child

    def _start_screen(self):
        reading, writing = os.pipe()
        size = f"{self.size[0]}x{self.size[1]}x24"
        self.run(["Xvfb", "-displayfd", str(writing), "-screen", "0", size, "+extension", "GLX",
                  "-noreset", "-nolisten", "tcp"], pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError("Xvfb did not start")
        self.environment["DISPLAY"] = ":" + number

    def _start_bus(self, kind):
        """A bus of the session's own. Programs are started on demand on the session's alone."""
        services = "<standard_session_servicedirs/>" if kind == "session" else ""
        settings = os.path.join(self.folder, kind + "-bus.conf")
        with open(settings, "w", encoding="utf-8") as file:
            file.write(f"""<busconfig>
  <type>{kind}</type>
  <listen>unix:dir={self.environment["XDG_RUNTIME_DIR"]}</listen>
  <auth>EXTERNAL</auth>
  {services}
  <policy context="default">
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
    <allow own="*"/>
  </policy>
</busconfig>
""")
        daemon = self.run(["dbus-daemon", "--config-file=" + settings, "--nofork",
                           "--print-address"], stdout=subprocess.PIPE, text=True)
        return daemon.stdout.readline().strip()

    def _start_window_manager(self):
        """It runs a command when it is about to manage windows. One that is mapped before stays
        unmanaged."""
        is_ready = os.path.join(self.folder, "window-manager-is-ready")
        self.run(["openbox", "--sm-disable", "--startup", "touch " + is_ready])
        wait_until(lambda: os.path.exists(is_ready), "a window manager")

    def _start_tray(self):
        height = str(TRAY_HEIGHT * self.scale)
        self.run(["trayer", "--edge", "top", "--align", "right", "--widthtype", "request",
                  "--heighttype", "pixel", "--height", height, "--SetDockType", "true",
                  "--SetPartialStrut", "true"])
        wait_until(lambda: "panel" in self.windows(), "a tray")

    def _start_accessibility(self, session_bus):
        """Tells programs that a screen reader runs; gives the bus on which they speak to it."""
        bus = connection(session_bus)
        address = bus.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None,
                                GLib.VariantType("(s)"), 0, 30000, None).unpack()[0]
        for name in ("IsEnabled", "ScreenReaderEnabled"):
            bus.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
                          GLib.Variant("(ssv)", ("org.a11y.Status", name, GLib.Variant("b", True))),
                          None, 0, 30000, None)
        bus.close_sync(None)
        accessibility_bus = connection(address)
        for event in ("object:", "window:", "focus:"):  # what nobody wants is not told
            accessibility_bus.call_sync(
                "org.a11y.atspi.Registry", "/org/a11y/atspi/registry", "org.a11y.atspi.Registry",
                "RegisterEvent", GLib.Variant("(sass)", (event, [], "")), None, 0, 30000, None)
        return accessibility_bus

    def output(self, command):
        """What a short command says; empty when it fails."""
        done = subprocess.run(command, env=self.environment, stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, check=False)
        return done.stdout.strip()

    def windows(self, process=None):
        """Of each window that the window manager shows, of that process or of all: the title and
        the identity. Icons in the tray and menus are none."""
        listed = self.output(["xprop", "-root", "_NET_CLIENT_LIST"])
        found = {}
        for window in re.findall(r"0x[0-9a-f]+", listed):
            facts = self.output(["xprop", "-id", window, "_NET_WM_PID", "WM_STATE", "WM_NAME"])
            title = re.search(r'^WM_NAME\(.*\) = "(.*)"$', facts, re.MULTILINE)
            is_shown = "window state: Normal" in facts
            is_its = process is None or f"_NET_WM_PID(CARDINAL) = {process}\n" in facts
            if title and is_shown and is_its:
                found[title[1]] = int(window, 16)
        return found

    def active_window(self):
        text = self.output(["xdotool", "getactivewindow"])
        return int(text) if text else None

    def frame_of(self, window):
        """Left, top, width and height in pixels of the screen."""
        text = self.output(["xwininfo", "-id", str(window)])
        return tuple(int(re.search(label + r":\s+(-?\d+)", text)[1]) for label in (
            "Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))

    def click(self, x, y, button=1):
        self.output(["xdotool", "mousemove", str(round(x)), str(round(y)), "click", str(button)])

    def close(self, window):
        """By the button at the right end of the title bar."""
        left, top, width, _ = self.frame_of(window)
        self.click(left + width - 11, top - 10)

    def move_pointer(self, x, y):
        self.output(["xdotool", "mousemove", str(round(x)), str(round(y))])

    def press(self, *keys):
        self.output(["xdotool", "key", *keys])

    def type(self, text):
        self.output(["xdotool", "type", "--delay", "5", text])

    def take_picture(self, path):
        self.output(["import", "-window", "root", path])

    def inhibitors(self):
        """The locks that the played logind has handed out: what, who, why, mode."""
        answer = self.system_bus.call_sync(
            "org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
            "ListInhibitors", None, GLib.VariantType("(a(ssssuu))"), 0, 10000, None)
        return [lock[:4] for lock in answer.unpack()[0]]


def connection(address):
    flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
             | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
    bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
    bus.set_exit_on_close(False)
    return bus


def new_folder():
    """Below a folder that is watched: "tmp" and the like are names that watching passes over."""
    chosen = os.environ.get("TARNBECK_TEST_FOLDER", "/var/lib/tarnbeck-tests")
    for parent in (chosen, os.path.expanduser("~/.tarnbeck-tests")):
        try:
            os.makedirs(parent, exist_ok=True)
            return tempfile.mkdtemp(prefix="desktop-", dir=parent)
        except OSError:
            continue
    raise RuntimeError("no place for a temporary folder")

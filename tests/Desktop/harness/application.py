"""One run of the program."""
import os
import re
import signal
import subprocess
import time

from . import processes
from .accessible import Accessibility
from .waiting import wait_until, wait_until_equal

MAIN_WINDOW = "Tarnbeck"
POPOVER = "Tarnbeck popover"
SETTINGS = "Settings"
MOMENT_OF_A_CLICK = 0.3


class Application:
    """With the given home. What it says is kept in the folder `records`."""

    def __init__(self, session, home, records, arguments=(), environment=None, before=()):
        """`before` are the words of a command that becomes the program."""
        self.session = session
        self.home = home
        os.makedirs(records, exist_ok=True)
        self._output = open(os.path.join(records, "stdout.txt"), "ab")
        self._errors = open(os.path.join(records, "stderr.txt"), "ab")
        scale = {"QT_SCALE_FACTOR": str(session.scale)} if session.scale != 1 else {}
        self._process = processes.start(
            [*before, os.environ["TARNBECK"], *arguments],
            {**session.environment, **scale, "HOME": home.path,
             "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
             "QT_LOGGING_RULES": "qt.accessibility.*=false", **(environment or {})},
            stdout=self._output, stderr=self._errors)
        self.pid = self._process.pid
        self._accessibility = Accessibility(session.accessibility_bus, self.pid)

    # Its life.

    def is_running(self):
        return self._process.poll() is None

    def wait_for_end(self):
        """The status with which it ends by itself; negative where a signal ended it."""
        wait_until(lambda: not self.is_running(), "the end of the program")
        return self._process.returncode

    def children(self):
        return processes.descendants(self.pid)

    def kill(self):
        self._process.kill()
        self._process.wait()

    def end(self):
        """By a signal first, so that it ends what it has started."""
        if self.is_running():
            self._process.send_signal(signal.SIGTERM)
            try:
                self._process.wait(10)
            except subprocess.TimeoutExpired:
                self.kill()
        self._output.close()
        self._errors.close()

    # Its windows.

    def windows(self):
        """The titles of its windows that can be seen, in order."""
        return sorted(self.session.windows(self.pid))

    def window(self, title):
        """The identity of a window that can be seen, or nothing."""
        return self.session.windows(self.pid).get(title)

    def wait_for_window(self, title):
        """Until it is there and has the focus."""
        window = wait_until(lambda: self.window(title), f"the window \"{title}\"")
        wait_until_equal(self.session.active_window, window, f"focus in \"{title}\"")
        return window

    def wait_for_no_window(self, title):
        wait_until(lambda: not self.window(title), f"the window \"{title}\" to go")

    # Its icon in the tray.

    def tray_icon(self):
        """Left, top, width and height of the icon, or nothing."""
        panel = self.session.windows().get("panel", 0)
        icons = self.session.output(["xwininfo", "-tree", "-id", str(panel)])
        found = re.search(r'\("tarnbeck" "[^"]*"\)\s+(\d+)x(\d+)\+-?\d+\+-?\d+\s+\+(\d+)\+(\d+)',
                          icons, re.IGNORECASE)
        if not found:
            return None
        width, height, left, top = (int(text) for text in found.groups())
        return (left, top, width, height) if width > 1 else None

    def wait_for_tray_icon(self):
        return wait_until(self.tray_icon, "an icon in the tray")

    def click_tray_icon(self, button=1):
        left, top, width, height = self.wait_for_tray_icon()
        self.session.click(left + width / 2, top + height / 2, button)

    def open_popover(self):
        """Leaves it as a person finds it, who does not click twice in a quarter of a second: such a
        click counts as part of the first."""
        self.click_tray_icon()
        window = self.wait_for_window(POPOVER)
        self.let_the_click_pass()
        return window

    def wait_for_no_popover(self):
        self.wait_for_no_window(POPOVER)
        self.let_the_click_pass()

    @staticmethod
    def let_the_click_pass():
        begin = time.monotonic()
        wait_until(lambda: time.monotonic() > begin + MOMENT_OF_A_CLICK, "time to pass")

    def context_menu(self):
        """Opens it and gives its entries from top to bottom; a separator has no name."""
        self.click_tray_icon(3)
        wait_until(lambda: self.find("menu item", "Quit"), "a menu")
        return [control.name for control in self.controls()
                if control.role in ("menu item", "separator")]

    # What is in its windows.

    def controls(self):
        return self._accessibility.controls()

    def find(self, role, name, window=None):
        return self._accessibility.find(role, name, window)

    def find_all(self, role, name=None, window=None):
        return self._accessibility.find_all(role, name, window)

    def names(self, role, window=None):
        return [control.name for control in self.find_all(role, None, window)]

    def wait_for(self, role, name, window=None):
        return wait_until(lambda: self.find(role, name, window), f"{role} \"{name}\"")

    def wait_for_none(self, role, name, window=None):
        wait_until(lambda: not self.find(role, name, window), f"{role} \"{name}\" to go")

    def focused(self):
        return self._accessibility.focused()

    def description(self, control):
        return self._accessibility.description(control)

    def text(self, control):
        return self._accessibility.text(control)

    def frame(self, control):
        """Left, top, width and height in pixels of the screen."""
        return tuple(self.session.scale * value for value in self._accessibility.frame(control))

    def center(self, control):
        left, top, width, height = self.frame(control)
        return left + width / 2, top + height / 2

    def point_at(self, control):
        self.session.move_pointer(*self.center(control))

    def click(self, role, name, window=None, button=1):
        """Clicks in the middle of it, once it is there and stands still."""
        control = self.wait_for(role, name, window)
        last = None

        def stands_still():
            nonlocal last
            before, last = last, self.center(control)
            return before == last

        wait_until(stands_still, f"{control} to stand still")
        self.session.click(*last, button)

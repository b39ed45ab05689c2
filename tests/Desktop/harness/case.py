"""What the tests stand on."""
import os
import shutil
import unittest

from . import processes
from .application import Application
from .home import Home
from .session import TRAY_HEIGHT, Session
from .waiting import wait_until


class DesktopTestCase(unittest.TestCase):
    """The tests of a class share a session. When one fails, a picture of the screen, what the
    program said and what could be read of its controls are kept below the folder that
    TARNBECK_RECORDS names."""

    size = (1600, 1000)
    scale = 1
    maxDiff = None
    has_tray = True
    session = None

    @classmethod
    def setUpClass(cls):
        processes.adopt_orphans()
        cls.session = Session(cls.size, cls.scale, cls.has_tray)
        cls.addClassCleanup(cls.session.end)

    def run(self, result=None):
        self._result = result
        return super().run(result)

    def setUp(self):
        self.home = Home(os.path.join(self.session.folder, self._testMethodName))
        self.records = os.path.join(os.environ["TARNBECK_RECORDS"], *self.id().split(".")[-2:])
        shutil.rmtree(self.records, ignore_errors=True)
        self.applications = []
        self.session.move_pointer(0, self.session.size[1] - 1)

    def tearDown(self):
        has_failed = any(test is self for test, _ in self._result.failures + self._result.errors)
        if has_failed:
            self.keep_what_can_be_seen()
        for application in self.applications:
            application.end()
        if not has_failed:
            shutil.rmtree(self.records, ignore_errors=True)

    def keep_what_can_be_seen(self):
        os.makedirs(self.records, exist_ok=True)
        self.session.take_picture(os.path.join(self.records, "screen.png"))
        for number, application in enumerate(self.applications):
            if not application.is_running():
                continue
            with open(os.path.join(self.records, f"controls-{number}.txt"), "w",
                      encoding="utf-8") as file:
                for control in application.controls():
                    file.write(f"{control.window}: {control} {sorted(control.states)}\n")
        log = self.home / ".config/tarnbeck/scan.log"
        if os.path.exists(log):
            shutil.copy(log, self.records)
        print(f"Kept in {self.records}: {', '.join(sorted(os.listdir(self.records)))}", flush=True)

    def start(self, *arguments, **options):
        """The program, with the home of this test."""
        application = Application(self.session, self.home, self.records, arguments, **options)
        self.applications.append(application)
        return application

    def open_other_window(self):
        """A window of another program, at the left below the place of a popover."""
        left, top = 5 * self.scale, self.session.size[1] - 45 * self.scale
        self.session.run(["xev", "-geometry", f"{200 * self.scale}x{20 * self.scale}+{left}+{top}",
                          "-event", "mouse"])
        return wait_until(lambda: self.session.windows().get("Event Tester"), "another window")

    def assert_inside_the_screen(self, window):
        left, top, width, height = self.session.frame_of(window)
        self.assertGreaterEqual(left, 0)
        self.assertGreaterEqual(top, TRAY_HEIGHT * self.scale if self.has_tray else 0)
        self.assertLessEqual(left + width, self.session.size[0])
        self.assertLessEqual(top + height, self.session.size[1])

    def wait_for_end_of(self, children):
        wait_until(lambda: not children & processes.parents().keys(),
                   "the end of " + ", ".join(processes.command_of(child) for child in children))

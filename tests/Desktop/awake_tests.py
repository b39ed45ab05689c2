"""Keeping the machine awake, as logind sees it."""
import unittest

from harness.application import MAIN_WINDOW
from harness.case import DesktopTestCase
from harness.waiting import wait_until, wait_until_equal

LOCK = ("idle:sleep", "Tarnbeck", "The user keeps the machine awake", "block")


class AwakeTests(DesktopTestCase):
    def start_asleep(self):
        self.home.configure(appMode="regular", repoPaths=[self.home.add_clean_repository("clean")])
        application = self.start()
        application.wait_for_window(MAIN_WINDOW)
        return application

    def keep_awake(self, application):
        application.click("check box", "Awake")
        wait_until_equal(self.session.inhibitors, [LOCK], "a lock of logind")
        wait_until(lambda: "checked" in application.find("check box", "Awake").states, "a check")

    def test_toggle_takes_a_lock_and_gives_it_back(self):
        application = self.start_asleep()
        self.assertEqual(self.session.inhibitors(), [])
        self.keep_awake(application)
        self.assertEqual(application.description(application.find("check box", "Awake")), "On")
        application.click("check box", "Awake")
        wait_until_equal(self.session.inhibitors, [], "the lock to be released")
        control = application.wait_for("check box", "Awake")
        wait_until_equal(lambda: application.description(control), "Off", "the control to tell")

    def test_lock_goes_with_a_program_that_is_killed(self):
        application = self.start_asleep()
        self.keep_awake(application)
        children = application.children()
        self.assertTrue(children)
        application.kill()
        wait_until_equal(self.session.inhibitors, [], "the lock to be released")
        self.wait_for_end_of(children)

    def test_lock_is_taken_at_start_when_configured(self):
        self.home.configure(keepAwakeOnLaunch=True)
        self.start()
        wait_until_equal(self.session.inhibitors, [LOCK], "a lock of logind")


if __name__ == "__main__":
    unittest.main(verbosity=2)

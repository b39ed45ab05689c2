"""How the program starts for people and on desktops of several kinds."""
import os
import shutil
import unittest

from harness.application import MAIN_WINDOW, POPOVER, SETTINGS
from harness.case import DesktopTestCase
from harness.waiting import wait_until_equal

# As root, git can be put out of reach for one process and its children, and the network too.
WITHOUT_GIT_AND_NETWORK = [
    shutil.which("unshare"), "--mount", "--net", "/bin/sh", "-c",
    f'{shutil.which("mount")} --bind /dev/null "$0" && exec "$@"', shutil.which("git")]


class StartTests(DesktopTestCase):
    def test_new_person_sees_their_repositories_without_a_click(self):
        paths = [self.home.add_dirty_repository(f"projects/{name}") for name in ("a", "b", "c")]
        application = self.start()
        application.wait_for_window(POPOVER)
        wait_until_equal(lambda: application.names("heading", POPOVER),
                         [f"{name}, Git Dirty, 1 change" for name in ("a", "b", "c")],
                         "the repositories")
        self.assertEqual(self.home.configuration()["repoPaths"], paths)

    def test_second_copy_ends_and_shows_the_settings(self):
        self.home.configure(repoPaths=[self.home.add_clean_repository("clean")])
        application = self.start()
        application.wait_for_tray_icon()
        self.assertEqual(self.start().wait_for_end(), 0)
        application.wait_for_window(SETTINGS)
        self.assertEqual(application.windows(), [SETTINGS])

    def test_fixtures_need_neither_git_nor_network_and_leave_the_home_alone(self):
        self.home.configure(repoPaths=[self.home.add_dirty_repository("projects/dirty")])
        before = self.home.contents()
        temporary = os.path.join(self.session.folder, "temporary")
        os.mkdir(temporary)
        application = self.start(
            "--ui-test-fixtures", environment={"PATH": "/nonexistent", "TMPDIR": temporary},
            before=WITHOUT_GIT_AND_NETWORK if os.geteuid() == 0 else [])
        application.wait_for_window(MAIN_WINDOW)
        application.click("radio button", "All")
        wait_until_equal(lambda: [name.partition(",")[0] for name in
                                  application.names("heading", MAIN_WINDOW)],
                         ["repo-dirty", "alpha-service", "repo-clean"], "the fixtures")
        application.click("push button", "Scan")
        application.wait_for("label", "Last scan: 0s ago")
        application.end()
        self.assertEqual(os.listdir(temporary), [])
        self.assertEqual(self.home.contents(), before)


class SmallScreenTests(DesktopTestCase):
    size = (1280, 720)

    def setUp(self):
        super().setUp()
        self.home.configure(repoPaths=[self.home.add_clean_repository("clean")])

    def test_window_has_room(self):
        application = self.start("--app-mode=regular")
        self.assert_inside_the_screen(application.wait_for_window(MAIN_WINDOW))

    def test_popover_has_room(self):
        self.assert_inside_the_screen(self.start().open_popover())

    def test_settings_have_room(self):
        application = self.start()
        application.open_popover()
        application.click("push button", "Settings", POPOVER)
        self.assert_inside_the_screen(application.wait_for_window(SETTINGS))


class StartWithoutTrayTests(DesktopTestCase):
    has_tray = False

    def test_window_opens_in_the_place_of_an_icon(self):
        self.home.configure(appMode="menuBarOnly",
                            repoPaths=[self.home.add_dirty_repository("projects/dirty")])
        application = self.start()
        window = application.wait_for_window(MAIN_WINDOW)
        self.assert_inside_the_screen(window)
        application.wait_for("heading", "dirty, Git Dirty, 1 change")
        self.assertEqual(application.windows(), [MAIN_WINDOW])
        self.session.close(window)
        self.assertEqual(application.wait_for_end(), 0)
        self.assertEqual(self.home.configuration()["appMode"], "menuBarOnly")


if __name__ == "__main__":
    unittest.main(verbosity=2)

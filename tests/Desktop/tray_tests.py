"""The program in the menu bar: its icon, its popover and its menu."""
import unittest

from harness.application import POPOVER, SETTINGS
from harness.case import DesktopTestCase
from harness.waiting import wait_until, wait_until_equal


class PopoverTests(DesktopTestCase):
    def setUp(self):
        super().setUp()
        self.home.configure(repoPaths=[self.home.add_dirty_repository("projects/dirty"),
                                       self.home.add_clean_repository("projects/clean")])

    def test_start_shows_an_icon_in_the_tray_and_no_window(self):
        application = self.start()
        application.wait_for_tray_icon()
        application.open_popover()  # by then a window would have come
        application.wait_for("heading", "dirty, Git Dirty, 1 change")
        self.assertEqual(application.windows(), [POPOVER])
        self.session.press("Escape")
        wait_until_equal(application.windows, [], "the popover to go")

    def test_click_on_the_icon_opens_the_popover_and_the_second_closes_it(self):
        application = self.start()
        application.open_popover()
        application.wait_for("check box", "Awake", POPOVER)
        application.click_tray_icon()
        application.wait_for_no_popover()
        application.open_popover()
        application.wait_for("check box", "Awake", POPOVER)

    def test_escape_closes_the_popover(self):
        application = self.start()
        application.open_popover()
        self.session.press("Escape")
        application.wait_for_no_popover()
        application.open_popover()

    def test_escape_closes_the_popover_from_the_search_field_too(self):
        application = self.start()
        application.open_popover()
        application.click("text", "Filter", POPOVER)
        self.session.type("dirty")
        wait_until_equal(lambda: application.text(application.find("text", "Filter")), "dirty",
                         "the search text")
        self.session.press("Escape")
        application.wait_for_no_popover()
        application.open_popover()
        field = application.wait_for("text", "Filter", POPOVER)
        self.assertEqual(application.text(field), "")

    def test_click_on_the_desktop_closes_the_popover(self):
        application = self.start()
        application.open_popover()
        width, height = self.session.size
        self.session.click(width / 2, height - 10)
        application.wait_for_no_popover()
        self.session.press("Escape")  # a window manager may have a menu there
        application.open_popover()

    def test_click_in_another_window_closes_the_popover(self):
        other = self.open_other_window()
        application = self.start()
        application.open_popover()
        left, top, width, height = self.session.frame_of(other)
        self.session.click(left + width / 2, top + height / 2)
        application.wait_for_no_popover()
        application.open_popover()

    def test_popover_lies_inside_the_screen_below_the_tray(self):
        application = self.start()
        self.assert_inside_the_screen(application.open_popover())


class ContextMenuTests(DesktopTestCase):
    def start_with_repositories(self, **configuration):
        self.home.configure(repoPaths=[self.home.add_dirty_repository("projects/dirty"),
                                       self.home.add_clean_repository("projects/clean"),
                                       self.home.add_repository_with_worktree("projects/tree"),
                                       self.home.add_repository_behind_its_remote("projects/old")],
                            **configuration)
        application = self.start()
        application.open_popover()
        application.wait_for("heading", "dirty, Git Dirty, 1 change")
        self.session.press("Escape")
        application.wait_for_no_popover()
        return application

    def test_right_click_opens_the_menu(self):
        application = self.start_with_repositories()
        self.assertEqual(application.context_menu(), [
            "2/4 repos clean", "", "dirty", "tree", "", "Scan Now", "Settings…", "",
            "Keep Mac Awake", "Show Dirty Count in Menu Bar", "", "Quit"])
        states = {control.name: control.states for control in application.find_all("menu item")}
        self.assertNotIn("enabled", states["2/4 repos clean"])
        self.assertNotIn("enabled", states["dirty"])
        self.assertNotIn("checked", states["Keep Mac Awake"])
        self.assertIn("checked", states["Show Dirty Count in Menu Bar"])
        self.assertEqual(application.windows(), [])

    def test_quit_ends_the_program_and_all_its_children(self):
        application = self.start_with_repositories(keepAwakeOnLaunch=True)
        wait_until(self.session.inhibitors, "a lock of logind")
        children = wait_until(application.children, "a child that holds the lock")
        application.context_menu()
        application.click("menu item", "Quit")
        self.assertEqual(application.wait_for_end(), 0)
        self.wait_for_end_of(children)
        wait_until_equal(self.session.inhibitors, [], "the lock to be released")

    def test_settings_of_the_menu_open_the_settings(self):
        application = self.start_with_repositories()
        application.context_menu()
        application.click("menu item", "Settings…")
        application.wait_for_window(SETTINGS)


if __name__ == "__main__":
    unittest.main(verbosity=2)

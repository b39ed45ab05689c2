"""The program as a window among windows: what it shows, and how it is worked with."""
import unittest

from harness.application import MAIN_WINDOW, POPOVER, SETTINGS
from harness.case import DesktopTestCase
from harness.waiting import wait_until, wait_until_equal

CHANGED_ROW = "Changed file notes.txt, modified"
HEADINGS = ["dirty, Git Dirty, 1 change", "old, Git Clean, Sync Behind 1",
            "tree, Git Attention, 1 branch, 1 worktree"]


class WindowTests(DesktopTestCase):
    def start_in_window(self, **configuration):
        self.home.configure(appMode="regular", **configuration)
        application = self.start()
        application.wait_for_window(MAIN_WINDOW)
        return application

    def start_with_four(self):
        """In the order of their headings; the clean one needs nothing and is not shown."""
        application = self.start_in_window(repoPaths=[
            self.home.add_dirty_repository("projects/dirty"),
            self.home.add_clean_repository("projects/clean"),
            self.home.add_repository_with_worktree("projects/tree"),
            self.home.add_repository_behind_its_remote("projects/old")])
        self.wait_for_headings(application, HEADINGS)
        return application

    def wait_for_headings(self, application, headings):
        wait_until_equal(lambda: sorted(application.names("heading", MAIN_WINDOW)), headings,
                         "the repositories on screen")

    def test_switch_shows_the_window_and_is_remembered(self):
        self.home.configure(appMode="menuBarOnly",
                            repoPaths=[self.home.add_dirty_repository("projects/dirty")])
        application = self.start("--app-mode=regular")
        window = application.wait_for_window(MAIN_WINDOW)
        self.assertEqual(application.windows(), [MAIN_WINDOW])
        self.assert_inside_the_screen(window)
        self.wait_for_headings(application, ["dirty, Git Dirty, 1 change"])
        wait_until_equal(lambda: self.home.configuration().get("appMode"), "regular", "the mode")

    def test_shows_what_needs_attention_and_all_when_asked(self):
        application = self.start_with_four()
        application.click("push button", "Masonry")  # where all four have room
        application.wait_for("push button", HEADINGS[0] + ", expanded")
        application.click("radio button", "All")
        application.wait_for("push button", "clean, Git Clean, collapsed")
        application.click("radio button", "Needs")
        application.wait_for_none("push button", "clean, Git Clean, collapsed")
        for heading in HEADINGS:
            application.wait_for("push button", heading + ", expanded")

    def test_changed_file_appears_and_can_be_discarded(self):
        repository = self.home.add_clean_repository("projects/quiet")
        application = self.start_in_window(repoPaths=[repository])
        wait_until_equal(lambda: application.names("heading", MAIN_WINDOW), ["No repos found"],
                         "nothing that needs attention")
        self.home.write("projects/quiet/notes.txt", "changed\n")
        self.wait_for_headings(application, ["quiet, Git Dirty, 1 change"])
        application.click("tree item", "Branch main, current, 1 change, collapsed")
        self.ask_to_discard(application)
        application.click("push button", "Cancel")
        application.wait_for_none("dialog", "Discard changes?")
        self.assertEqual(self.home.read("projects/quiet/notes.txt"), "changed\n")
        self.ask_to_discard(application)
        application.click("push button", "Discard")
        wait_until_equal(lambda: self.home.read("projects/quiet/notes.txt"), "as committed\n",
                         "the file to be restored")
        self.wait_for_headings(application, ["No repos found"])

    def ask_to_discard(self, application):
        application.point_at(application.wait_for("list item", CHANGED_ROW))
        application.click("push button", "Discard changes in this file")
        dialog = application.wait_for("dialog", "Discard changes?")
        self.assertEqual(application.description(dialog),
                         "Discard all uncommitted changes for notes.txt?")
        wait_until_equal(lambda: str(application.focused()), 'push button "Cancel"',
                         "the focus on Cancel")

    def test_escape_answers_the_alert_with_cancel(self):
        application = self.start_in_window(
            repoPaths=[self.home.add_dirty_repository("projects/dirty")])
        application.click("tree item", "Branch main, current, 1 change, collapsed")
        self.ask_to_discard(application)
        self.session.press("Escape")
        application.wait_for_none("dialog", "Discard changes?")
        self.assertEqual(self.home.read("projects/dirty/notes.txt"), "changed\n")
        self.assertEqual(application.windows(), [MAIN_WINDOW])

    def test_tab_reaches_the_controls_and_the_rows(self):
        application = self.start_with_four()
        stops = []
        while len(stops) < 40:
            before = application.focused()
            self.session.press("Tab")
            stop = wait_until(lambda: self.focus_other_than(application, before),
                              f"the focus to leave {before}")
            if stop.path in [earlier.path for earlier in stops]:
                break
            stops.append(stop)
        refresh = 'push button "Refresh git data for this repository"'
        self.assertEqual([str(stop) for stop in stops], [
            'push button "Masonry"', 'push button "Scan"', 'push button "Sort"',
            'push button "Equalize"', 'check box "Awake"', 'push button "Settings"',
            'panel "Filter"', 'panel "Domain"', 'text "Filter"',
            # Of each repository the buttons, a row, and that row's own button.
            refresh, 'tree item "Branches, 1, expanded"', refresh,
            'push button "Fetch remote changes and fast-forward this repository"',
            refresh, 'tree item "Branches, 1, expanded"', refresh,
            refresh, 'tree item "Branches, 2, expanded"', refresh])

    @staticmethod
    def focus_other_than(application, before):
        focused = application.focused()
        return focused if focused and not (before and focused.path == before.path) else None

    def test_keyboard_finds_filters_and_clears(self):
        application = self.start_with_four()
        self.session.press("ctrl+f")
        wait_until_equal(lambda: str(application.focused()), 'text "Filter"', "the search field")
        self.session.type("dir")
        self.wait_for_headings(application, ["dirty, Git Dirty, 1 change"])
        self.session.press("Escape")
        wait_until_equal(lambda: application.text(application.find("text", "Filter")), "",
                         "an empty search field")
        self.wait_for_headings(application, HEADINGS)

    def test_repository_added_in_the_settings_appears(self):
        added = self.home.add_dirty_repository("elsewhere/late")
        application = self.start_in_window(repoPaths=[self.home.add_clean_repository("clean")])
        application.click("push button", "Settings", MAIN_WINDOW)
        self.assert_inside_the_screen(application.wait_for_window(SETTINGS))
        application.click("text", "Add Custom Repository", SETTINGS)
        self.session.type("~/elsewhere/late")
        application.click("push button", "Add", SETTINGS)
        application.wait_for("push button", f"Remove {added}", SETTINGS)
        self.wait_for_headings(application, ["late, Git Dirty, 1 change"])
        wait_until_equal(lambda: self.home.configuration()["repoPaths"],
                         [self.home / "clean", added], "the configuration")
        application.click("push button", "Done", SETTINGS)
        application.wait_for_no_window(SETTINGS)

    def test_second_copy_ends_and_raises_the_window(self):
        application = self.start_in_window(
            repoPaths=[self.home.add_clean_repository("projects/clean")])
        application.wait_for("check box", "Awake")
        other = self.open_other_window()
        left, top, width, height = self.session.frame_of(other)
        self.session.click(left + width / 2, top + height / 2)
        wait_until_equal(self.session.active_window, other, "another window to be active")
        self.assertEqual(self.start().wait_for_end(), 0)
        application.wait_for_window(MAIN_WINDOW)

    def test_remembered_state_that_is_broken_is_as_good_as_none(self):
        self.home.write(".config/tarnbeck/defaults.json", "{ broken")
        application = self.start_in_window(
            repoPaths=[self.home.add_dirty_repository("projects/dirty")])
        application.click("tree item", "Issues, 0, collapsed")
        application.wait_for("tree item", "Issues, 0, expanded")
        wait_until(lambda: "ui.subsectionExpandedByRepo.v1" in self.home.read(
            ".config/tarnbeck/defaults.json"), "the state to be remembered")

    def test_closed_window_leaves_the_program_in_the_tray(self):
        application = self.start_in_window(
            repoPaths=[self.home.add_dirty_repository("projects/dirty")])
        self.session.close(application.window(MAIN_WINDOW))
        application.wait_for_no_window(MAIN_WINDOW)
        application.open_popover()
        application.wait_for("heading", "dirty, Git Dirty, 1 change", POPOVER)

    def test_second_copy_opens_a_closed_window_again(self):
        application = self.start_in_window(
            repoPaths=[self.home.add_dirty_repository("projects/dirty")])
        application.wait_for("heading", "dirty, Git Dirty, 1 change")
        self.session.close(application.window(MAIN_WINDOW))
        application.wait_for_no_window(MAIN_WINDOW)
        self.assertEqual(self.start().wait_for_end(), 0)
        application.wait_for_window(MAIN_WINDOW)
        application.wait_for("heading", "dirty, Git Dirty, 1 change", MAIN_WINDOW)

    def test_settings_that_were_far_away_come_back_to_the_screen(self):
        self.home.write(".config/tarnbeck/defaults.json",
                        '{"TarnbeckSettingsWindow.x": 9000, "TarnbeckSettingsWindow.topY": -9000}')
        application = self.start_in_window(repoPaths=[self.home.add_clean_repository("clean")])
        application.click("push button", "Settings", MAIN_WINDOW)
        self.assert_inside_the_screen(application.wait_for_window(SETTINGS))


if __name__ == "__main__":
    unittest.main(verbosity=2)

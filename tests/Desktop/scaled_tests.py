"""The main things again on a screen of twice as many dots."""
import unittest

import tray_tests
import window_tests


class PopoverTests(tray_tests.PopoverTests):
    scale = 2


class ContextMenuTests(tray_tests.ContextMenuTests):
    scale = 2


class WindowTests(window_tests.WindowTests):
    scale = 2


def load_tests(_loader, _tests, _pattern):
    return unittest.TestSuite([
        PopoverTests("test_click_on_the_icon_opens_the_popover_and_the_second_closes_it"),
        PopoverTests("test_click_in_another_window_closes_the_popover"),
        PopoverTests("test_popover_lies_inside_the_screen_below_the_tray"),
        ContextMenuTests("test_quit_ends_the_program_and_all_its_children"),
        WindowTests("test_switch_shows_the_window_and_is_remembered"),
        WindowTests("test_shows_what_needs_attention_and_all_when_asked"),
        WindowTests("test_changed_file_appears_and_can_be_discarded"),
        WindowTests("test_repository_added_in_the_settings_appears")])


if __name__ == "__main__":
    unittest.main(verbosity=2)

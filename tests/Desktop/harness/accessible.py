"""What the program tells assistive software, read from the bus as a screen reader does. It is read
anew at each look: nothing is remembered that may have gone meanwhile."""
from dataclasses import dataclass

from gi.repository import GLib

STATES = {1: "active", 4: "checked", 8: "enabled", 12: "focused", 24: "sensitive", 25: "showing",
          30: "visible", 41: "checkable"}
ACCESSIBLE = "org.a11y.atspi.Accessible"
COMPONENT = "org.a11y.atspi.Component"
PROPERTIES = "org.freedesktop.DBus.Properties"
ROOT = "/org/a11y/atspi/accessible/root"
SECONDS = 15
MENU_ROLES = ("popup menu", "menu item", "separator")


@dataclass(frozen=True)
class Control:
    """Something that has a role and a name. `window` is the title of the window it is in."""
    path: str
    role: str
    name: str
    states: frozenset
    window: str

    def __str__(self):
        return f"{self.role} \"{self.name}\""


class Accessibility:
    """Of the program that runs as that process."""

    def __init__(self, bus, process):
        self._bus = bus
        self._process = process
        self._name = None
        self._popups = []
        bus.signal_subscribe(None, "org.a11y.atspi.Event.Object", None, None, None, 0,
                             self._noticed)

    def is_there(self):
        self._name = self._name or self._connection_of_process()
        return self._name is not None

    def controls(self):
        """All that can be seen, window after window, from the outside to the inside."""
        if not self.is_there():
            return []
        found = self._below((self._children([ROOT]) or [[]])[0])
        menus = self._below([path for path in self._popups
                             if path not in {control.path for control in found}])
        return found + [control for control in menus if control.role in MENU_ROLES]

    def find(self, role, name, window=None):
        """The first control of that role and name, or nothing."""
        return next(iter(self.find_all(role, name, window)), None)

    def find_all(self, role, name=None, window=None):
        return [control for control in self.controls()
                if control.role == role and name in (None, control.name)
                and window in (None, control.window)]

    def focused(self):
        """What has the keyboard's focus, the innermost."""
        found = [control for control in self.controls()
                 if "focused" in control.states and control.role not in ("frame", "window")]
        return found[-1] if found else None

    def description(self, control):
        return self._together([(control.path, PROPERTIES, "Get",
                                ("(ss)", (ACCESSIBLE, "Description")))])[0][0]

    def text(self, control):
        """What stands in a field."""
        return self._together([(control.path, "org.a11y.atspi.Text", "GetText",
                                ("(ii)", (0, -1)))])[0][0]

    def frame(self, control):
        """Left, top, width and height on the screen, as the program tells them."""
        return self._together([(control.path, COMPONENT, "GetExtents", ("(u)", (0,)))])[0][0]

    def _below(self, paths):
        found = []
        level = [(path, None) for path in paths]
        while level:
            read = self._read(level)
            found += [control for control, _ in read if "showing" in control.states]
            level = [(child, control.window) for control, children in read for child in children]
        return found

    def _noticed(self, _bus, sender, path, _interface, event, values):
        """A menu of the system's kind is in no window: that it shows is told by an event alone."""
        if event == "StateChanged" and values.unpack()[:2] == ("showing", 1) and self.is_there():
            if sender == self._name and path not in self._popups:
                self._popups.append(path)

    def _connection_of_process(self):
        names = self._ask_bus("ListNames", None)
        for name in names or []:
            if name.startswith(":") and self._ask_bus(
                    "GetConnectionUnixProcessID", GLib.Variant("(s)", (name,))) == self._process:
                return name
        return None

    def _ask_bus(self, method, arguments):
        try:
            return self._bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                       "org.freedesktop.DBus", method, arguments, None, 0,
                                       SECONDS * 1000, None).unpack()[0]
        except GLib.Error:
            return None  # gone between the two questions

    def _children(self, paths):
        answers = self._together([(path, ACCESSIBLE, "GetChildren", None) for path in paths])
        return [[path for _, path in answer[0]] if answer else [] for answer in answers]

    def _read(self, level):
        """Of each place of the level the control that is there, and where its children are. What
        has gone since its parent was asked is left out."""
        paths = [path for path, _ in level]
        questions = []
        for path in paths:
            questions += [(path, PROPERTIES, "Get", ("(ss)", (ACCESSIBLE, "Name"))),
                          (path, ACCESSIBLE, "GetRoleName", None),
                          (path, ACCESSIBLE, "GetState", None),
                          (path, ACCESSIBLE, "GetChildren", None)]
        answers = self._together(questions)
        read = []
        for index, (path, window) in enumerate(level):
            name, role, states, children = answers[4 * index:4 * index + 4]
            if None in (name, role, states, children):
                continue
            control = Control(path, role[0], name[0], states_of(states[0]),
                              name[0] if window is None else window)
            read.append((control, [child for _, child in children[0]]))
        return read

    def _together(self, questions):
        """The answers to all questions, which are asked at once; nothing where there is none."""
        answers = [None] * len(questions)
        missing = len(questions)

        def answered(index):
            def take(bus, result):
                nonlocal missing
                missing -= 1
                try:
                    answers[index] = bus.call_finish(result).unpack()
                except GLib.Error:
                    pass
            return take

        for index, (path, interface, method, arguments) in enumerate(questions):
            values = GLib.Variant(*arguments) if arguments else None
            self._bus.call(self._name, path, interface, method, values, None, 0, SECONDS * 1000,
                           None, answered(index))
        while missing:
            GLib.MainContext.default().iteration(True)
        return answers


def states_of(words):
    bits = words[0] | (words[1] << 32)
    return frozenset(name for bit, name in STATES.items() if bits >> bit & 1)

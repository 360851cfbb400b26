"""Controls of the running program, found through the accessibility tree."""

from __future__ import annotations

from collections.abc import Callable, Iterator

from .desktop import Desktop
from .waiting import TookTooLong, wait_until

Desktop.shared()  # the accessibility library reads its bus on import

import gi  # noqa: E402

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

Atspi.init()
Atspi.set_timeout(5000, 15000)


class NotFound(TookTooLong):
    """No such control appeared; the message shows the tree that was there."""


class Control:
    """One control as it is now. Its properties are asked of the program each time.

    One that has vanished since has no name, no description and no role.
    """

    def __init__(self, accessible: Atspi.Accessible) -> None:
        self._accessible = accessible

    # What it is. ---------------------------------------------------------

    @property
    def name(self) -> str:
        name = self._word(self._accessible.get_name)
        if not name and self.role == "password text":
            return self.description  # the toolkit names no secret field; its prompt is the description
        return name

    @property
    def description(self) -> str:
        return self._word(self._accessible.get_description)

    @property
    def role(self) -> str:
        """As the screen reader's list has it: "push button", "text", "check box", "label"."""
        return self._word(self._accessible.get_role_name)

    @staticmethod
    def _word(ask: Callable[[], str | None]) -> str:
        try:
            return ask() or ""
        except GLib.Error:
            return ""

    @property
    def text(self) -> str:
        """The text that a field holds."""
        interface = self._accessible.get_text_iface()
        return Atspi.Text.get_text(interface, 0, Atspi.Text.get_character_count(interface)) if interface else ""

    def _has(self, state: Atspi.StateType) -> bool:
        return self._accessible.get_state_set().contains(state)

    @property
    def states(self) -> list[str]:
        """What is out of the ordinary about it: "checked", "selected", "disabled"."""
        states = self._accessible.get_state_set()
        words = [word for state, word in ((Atspi.StateType.CHECKED, "checked"), (Atspi.StateType.SELECTED, "selected"))
                 if states.contains(state)]
        return words if states.contains(Atspi.StateType.SENSITIVE) else [*words, "disabled"]

    @property
    def is_shown(self) -> bool:
        states = self._accessible.get_state_set()
        return states.contains(Atspi.StateType.VISIBLE) and states.contains(Atspi.StateType.SHOWING)

    @property
    def is_checked(self) -> bool:
        return self._has(Atspi.StateType.CHECKED)

    @property
    def is_focused(self) -> bool:
        return self._has(Atspi.StateType.FOCUSED)

    @property
    def is_enabled(self) -> bool:
        return self._has(Atspi.StateType.ENABLED) and self._has(Atspi.StateType.SENSITIVE)

    @property
    def frame(self) -> tuple[int, int, int, int]:
        """Left, top, width and height on the screen."""
        extents = self._accessible.get_extents(Atspi.CoordType.SCREEN)
        return extents.x, extents.y, extents.width, extents.height

    @property
    def centre(self) -> tuple[int, int]:
        left, top, width, height = self.frame
        return left + width // 2, top + height // 2

    # Where it stands. ------------------------------------------------------

    @property
    def children(self) -> list[Control]:
        count = self._accessible.get_child_count()
        children = (self._accessible.get_child_at_index(index) for index in range(count))
        return [Control(child) for child in children if child is not None]

    def walk(self) -> Iterator[Control]:
        """This control and all below it, those that vanish meanwhile left out."""
        yield self
        try:
            children = self.children
        except GLib.Error:
            return
        for child in children:
            yield from child.walk()

    def walk_shown(self, last_first: bool = False) -> Iterator[Control]:
        """As walk(), of what is on the screen. What an invisible control holds is not even asked for.
        last_first: of the children of each the last one first, where what comes and goes is found soonest."""
        try:
            states = self._accessible.get_state_set()
            if not states.contains(Atspi.StateType.VISIBLE) and self.role != "application":
                return
            if states.contains(Atspi.StateType.SHOWING):
                yield self
            children = self.children
        except GLib.Error:
            return
        for child in reversed(children) if last_first else children:
            yield from child.walk_shown(last_first)

    def all(self, name: str | None = None, role: str | None = None, starting: str | None = None,
            shown: bool = True, holding: str = "") -> list[Control]:
        """The controls below with that name (or one that starts so, or holds that) and role, without waiting."""
        found = []
        for control in self.walk_shown() if shown else self.walk():
            if role is not None and control.role != role:
                continue
            called = control.name
            if (name is None or called == name) and (starting is None or called.startswith(starting)) and holding in called:
                found.append(control)
        return found

    def find(self, name: str | None = None, role: str | None = None, starting: str | None = None,
             seconds: float = 10) -> Control:
        """The first such control that is shown, waited for."""
        try:
            return wait_until(lambda: next(iter(self.all(name, role, starting)), None), seconds=seconds)
        except TookTooLong:
            wanted = " ".join(filter(None, [role, repr(name or (starting or "") + "…")]))
            raise NotFound(f"no {wanted} within {seconds:g} s in\n{self.tree()}") from None

    def has(self, name: str | None = None, role: str | None = None, starting: str | None = None) -> bool:
        return bool(self.all(name, role, starting))

    def wait_gone(self, name: str | None = None, role: str | None = None, starting: str | None = None,
                  seconds: float = 10) -> None:
        wait_until(lambda: not self.has(name, role, starting), f"{name or starting!r} is still there", seconds)

    def tree(self, indent: str = "") -> str:
        """The controls below as an indented list, for a person to read."""
        try:
            line = f"{indent}{self.role} {self.name!r}"
            if not self.is_shown:
                line += " (hidden)"
            if self.text:
                line += f" = {self.text!r}"
            return "\n".join([line] + [child.tree(indent + "  ") for child in self.children])
        except GLib.Error as failure:
            return f"{indent}(gone: {failure.message})"

    # What can be done to it. -------------------------------------------------

    @property
    def actions(self) -> list[str]:
        interface = self._accessible.get_action_iface()
        if interface is None:
            return []
        return [Atspi.Action.get_action_name(interface, index) for index in range(Atspi.Action.get_n_actions(interface))]

    def press(self) -> None:
        """Its accessible press, as a screen reader does it."""
        for wanted in ("Press", "Toggle", "ShowMenu"):
            if wanted in self.actions:
                Atspi.Action.do_action(self._accessible.get_action_iface(), self.actions.index(wanted))
                return
        raise AssertionError(f"{self.role} {self.name!r} has no press action, only {self.actions}")

    def take_keyboard(self) -> None:
        """The keyboard comes to it, as a screen reader asks for it."""
        Atspi.Action.do_action(self._accessible.get_action_iface(), self.actions.index("SetFocus"))
        wait_until(lambda: self.is_focused, f"{self.name!r} does not take the keyboard")

    def hover(self) -> None:
        wait_until(lambda: self.frame[2] > 0 and self.frame[3] > 0, f"{self.name!r} has no place on the screen")
        x, y = self.centre
        Desktop.shared().run("xdotool", "mousemove", str(x), str(y))

    def scroll(self, clicks: int) -> None:
        """Turns the mouse wheel over its middle, down for a positive number."""
        self.hover()
        wheel = "5" if clicks > 0 else "4"
        Desktop.shared().run("xdotool", "click", "--repeat", str(abs(clicks)), "--delay", "20", wheel)

    def click(self, button: int = 1) -> None:
        """A click of the mouse on its middle."""
        self.hover()
        Desktop.shared().run("xdotool", "click", str(button))

    def double_click(self) -> None:
        self.hover()
        Desktop.shared().run("xdotool", "click", "--repeat", "2", "--delay", "80", "1")

    def __repr__(self) -> str:
        return f"<{self.role} {self.name!r}>"


class Announcements:
    """What a screen reader is told of by itself: the names of what has come into a state, in their order."""

    def __init__(self, state: str, role: Atspi.Role) -> None:
        self._event = f"object:state-changed:{state}"
        self._role = role
        self._heard: list[str] = []
        self._listener = Atspi.EventListener.new(self._hear)
        self._listener.register(self._event)

    @classmethod
    def of_alerts(cls) -> Announcements:
        return cls("showing", Atspi.Role.ALERT)

    @classmethod
    def of_usable_buttons(cls) -> Announcements:
        return cls("enabled", Atspi.Role.PUSH_BUTTON)

    def _hear(self, event: Atspi.Event) -> None:
        try:
            if event.detail1 and event.source.get_role() == self._role:
                self._heard.append(event.source.get_name())
        except GLib.Error:
            pass  # it has gone again

    @property
    def heard(self) -> list[str]:
        while GLib.MainContext.default().iteration(False):
            pass
        return list(self._heard)

    def end(self) -> None:
        self._listener.deregister(self._event)


def application(pid: int) -> Control | None:
    """The accessible root of a running program."""
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        child = desktop.get_child_at_index(index)
        try:
            if child is not None and child.get_process_id() == pid:
                # Without a main loop nothing would keep a cache fresh.
                child.set_cache_mask(Atspi.Cache.NONE)
                return Control(child)
        except GLib.Error:
            continue
    return None

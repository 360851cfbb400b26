"""The settings window, in the words of a reader."""

from __future__ import annotations

from .program import Program


class Settings:
    """The open settings window at one of its tabs."""

    def __init__(self, program: Program, tab: str) -> None:
        self._program = program
        program.find("Settings", role="push button").click()
        self.window = program.find("Quire Settings", role="frame")
        self.show(tab)

    def show(self, tab: str) -> None:
        self.window.find(tab, role="page tab").click()

    def field(self, name: str):
        return self.window.find(name, role="text")

    def enter(self, name: str, text: str) -> None:
        """Replaces what a field holds."""
        self.field(name).click()
        self._program.keys("ctrl+a", "Delete")
        if text:
            self._program.type(text)

    def press(self, name: str, beside: str = "") -> None:
        """Presses a button; beside: the field whose row it stands in, where several bear its name."""
        buttons = [b for b in self.window.all(name, role="push button") if not beside or b.description == beside]
        buttons[0].click()

    def save(self) -> None:
        self.press("Save")

    def refuses(self, title: str, message: str) -> None:
        """Save, read the notice, and dismiss it; the window stays open."""
        self.save()
        self._program.wait_for_text(title)
        self._program.wait_for_text(message)
        self.dismiss_notice()

    def dismiss_notice(self) -> None:
        self.window.find("OK", role="push button").click()
        self.window.wait_gone("OK", role="push button")

    def close(self) -> None:
        self.press("Cancel")
        self._program.wait_gone("Quire Settings")

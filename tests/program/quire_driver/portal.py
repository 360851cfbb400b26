"""The folder picker of a desktop, answered by a test in place of a person."""

from __future__ import annotations

import threading
from typing import Any

from .desktop import Desktop

Desktop.shared()  # the bus it stands on

import gi  # noqa: E402

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

NAME = "org.freedesktop.portal.Desktop"
OBJECT = "/org/freedesktop/portal/desktop"

_description = Gio.DBusNodeInfo.new_for_xml("""
<node>
  <interface name="org.freedesktop.portal.FileChooser">
    <method name="OpenFile">
      <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
      <arg type="o" direction="out"/>
    </method>
    <property name="version" type="u" access="read"/>
  </interface>
</node>""").interfaces[0]


class FolderPortal:
    """Lends a folder picker to the programs on the session bus until `stop`. What it was asked is in
    `questions`; `answer` is the folder chosen, None for a reader who cancels."""

    def __init__(self, version: int = 4) -> None:
        self.answer: str | None = None
        self.questions: list[dict[str, Any]] = []
        self._version = version
        self._context = GLib.MainContext.new()
        self._loop = GLib.MainLoop.new(self._context, False)
        self._named = threading.Event()
        self._thread = threading.Thread(target=self._serve, daemon=True)
        self._thread.start()
        if not self._named.wait(20):
            raise RuntimeError("the session bus gave the portal no name")

    def _serve(self) -> None:
        self._context.push_thread_default()
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        bus = Gio.DBusConnection.new_for_address_sync(
            Desktop.shared().environment["DBUS_SESSION_BUS_ADDRESS"], flags, None, None)
        bus.register_object(OBJECT, _description, self._asked, lambda *_: GLib.Variant("u", self._version), None)
        Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE, lambda *_: self._named.set(), None)
        self._loop.run()
        bus.close_sync(None)
        self._context.pop_thread_default()

    def _asked(self, bus, sender, _object, _interface, _method, arguments, invocation) -> None:
        window, title, options = arguments.unpack()
        self.questions.append({"window": window, "title": title} | options)
        request = f"{OBJECT}/request/{sender[1:].replace('.', '_')}/{options['handle_token']}"
        invocation.return_value(GLib.Variant("(o)", (request,)))
        results = {} if self.answer is None else {
            "uris": GLib.Variant("as", [Gio.File.new_for_path(self.answer).get_uri()])}
        bus.emit_signal(
            sender, request, "org.freedesktop.portal.Request", "Response",
            GLib.Variant("(ua{sv})", (1 if self.answer is None else 0, results)))

    def stop(self) -> None:
        self._context.invoke_full(GLib.PRIORITY_DEFAULT, self._loop.quit)
        self._thread.join(20)

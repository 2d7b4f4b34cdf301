#!/usr/bin/python3
"""A long session with a screen reader, then the window closed as the user closes it.

Runs against a window already on the accessibility bus (the application
"dialcraft") whose process id is in DIALCRAFT_WINDOW_PID. For a number of
rounds it walks the whole accessibility tree, moves the keyboard focus with
Tab through the X server, types into knob fields, presses set buttons and set
all through their AT-SPI "Press" action, opens and cancels both file dialogs,
opens and closes the monitor, and resizes the window, walking the tree again
after each step, as a screen reader does when the window changes. Then it asks
the window to close through the window manager's protocol (WM_DELETE_WINDOW)
and waits for the process to end; the caller checks how it ended.
Each run of the window (DIALCRAFT_SESSION_RUN, from 1) is closed in another
state: at rest, with the save dialog open, while set all runs, with a type
menu's list open.
Usage: atspi_long_session.py ROUNDS
"""
import ctypes
import os
import sys
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

# The action-name call of this Atspi version is the one that works in every
# version this test meets; its deprecation note is noise here.
warnings.filterwarnings("ignore", category=DeprecationWarning)

R = Atspi.Role
TAB = 0xFF09  # XK_Tab
SPACE = 0x0020  # XK_space


class X11:
    """The few Xlib calls the session needs: find the window, resize, close."""

    class ClientMessage(ctypes.Structure):
        _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                    ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                    ("format", ctypes.c_int), ("data", ctypes.c_long * 5)]

    def __init__(self):
        lib = ctypes.cdll.LoadLibrary("libX11.so.6")
        lib.XOpenDisplay.restype = ctypes.c_void_p
        lib.XOpenDisplay.argtypes = [ctypes.c_char_p]
        lib.XDefaultRootWindow.restype = ctypes.c_ulong
        lib.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
        lib.XInternAtom.restype = ctypes.c_ulong
        lib.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
        lib.XQueryTree.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.POINTER(ctypes.c_ulong),
                                   ctypes.POINTER(ctypes.c_ulong), ctypes.POINTER(ctypes.POINTER(ctypes.c_ulong)),
                                   ctypes.POINTER(ctypes.c_uint)]
        lib.XGetWindowProperty.argtypes = [
            ctypes.c_void_p, ctypes.c_ulong, ctypes.c_ulong, ctypes.c_long, ctypes.c_long, ctypes.c_int,
            ctypes.c_ulong, ctypes.POINTER(ctypes.c_ulong), ctypes.POINTER(ctypes.c_int),
            ctypes.POINTER(ctypes.c_ulong), ctypes.POINTER(ctypes.c_ulong), ctypes.POINTER(ctypes.c_void_p)]
        lib.XFree.argtypes = [ctypes.c_void_p]
        lib.XResizeWindow.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_uint, ctypes.c_uint]
        lib.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long, ctypes.c_void_p]
        lib.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
        lib.XSetInputFocus.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_ulong]
        # Qt makes and destroys helper windows of its own; one that goes while
        # it is being looked at is an X error, which is not ours to stop on.
        self._ignore = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(lambda d, e: 0)
        lib.XSetErrorHandler(self._ignore)
        self.lib = lib
        self.display = lib.XOpenDisplay(None)
        if not self.display:
            raise RuntimeError("cannot open the X display")

    def atom(self, name):
        return self.lib.XInternAtom(self.display, name.encode(), 0)

    def window_of(self, pid):
        """The visible top-level window whose _NET_WM_PID is `pid`, or None."""
        root = self.lib.XDefaultRootWindow(self.display)
        root_ret, parent = ctypes.c_ulong(), ctypes.c_ulong()
        children, count = ctypes.POINTER(ctypes.c_ulong)(), ctypes.c_uint()
        if not self.lib.XQueryTree(self.display, root, ctypes.byref(root_ret), ctypes.byref(parent),
                                   ctypes.byref(children), ctypes.byref(count)):
            return None
        windows = [children[i] for i in range(count.value)]
        if children:
            self.lib.XFree(children)
        pid_atom, protocols = self.atom("_NET_WM_PID"), self.atom("WM_PROTOCOLS")
        for window in windows:
            if self.cardinal(window, pid_atom) == pid and self.cardinal(window, protocols) is not None:
                return window
        return None

    def cardinal(self, window, atom):
        actual, fmt = ctypes.c_ulong(), ctypes.c_int()
        items, after, data = ctypes.c_ulong(), ctypes.c_ulong(), ctypes.c_void_p()
        if self.lib.XGetWindowProperty(self.display, window, atom, 0, 1, 0, 0, ctypes.byref(actual),
                                       ctypes.byref(fmt), ctypes.byref(items), ctypes.byref(after),
                                       ctypes.byref(data)) != 0:
            return None
        value = None
        if data.value and items.value > 0 and fmt.value == 32:
            value = ctypes.cast(data, ctypes.POINTER(ctypes.c_ulong))[0]
        if data.value:
            self.lib.XFree(data)
        return value

    def focus(self, window):
        # No window manager runs on the test display: the window gets the
        # keyboard only when given it.
        self.lib.XSetInputFocus(self.display, window, 2, 0)  # RevertToParent, CurrentTime
        self.lib.XSync(self.display, 0)

    def resize(self, window, width, height):
        self.lib.XResizeWindow(self.display, window, width, height)
        self.lib.XSync(self.display, 0)

    def close(self, window):
        event = (ctypes.c_long * 24)()
        message = X11.ClientMessage.from_buffer(event)
        message.type = 33  # ClientMessage
        message.send_event = 1
        message.display = self.display
        message.window = window
        message.message_type = self.atom("WM_PROTOCOLS")
        message.format = 32
        message.data[0] = self.atom("WM_DELETE_WINDOW")
        message.data[1] = 0  # CurrentTime
        self.lib.XSendEvent(self.display, window, 0, 0, ctypes.byref(event))
        self.lib.XSync(self.display, 0)


def wait_for(predicate, seconds):
    deadline = GLib.get_monotonic_time() + int(seconds * 1_000_000)
    while GLib.get_monotonic_time() < deadline:
        if predicate():
            return True
        context = GLib.MainContext.default()
        while context.pending():
            context.iteration(False)
        GLib.usleep(20_000)
    return predicate()


def running(pid):
    """False once the process has ended (a zombie waiting for its parent counts as ended)."""
    try:
        with open(f"/proc/{pid}/stat") as stat:
            return stat.read().rsplit(")", 1)[1].split()[0] != "Z"
    except OSError:
        return False


def find_application(name, seconds):
    found = []

    def look():
        desktop = Atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            app = desktop.get_child_at_index(i)
            if app is not None and app.get_name() == name:
                found.append(app)
                return True
        return False

    return found[0] if wait_for(look, seconds) else None


def walk(node, found):
    """Every showing object under `node`, read as a screen reader reads it."""
    try:
        states = node.get_state_set()
        if not states.contains(Atspi.StateType.SHOWING):
            return
        node.get_name()
        node.get_description()
        node.get_role_name()
        found.append(node)
        walk_children(node, found)
    except GLib.Error:
        # An object that went away while being read: the window changed.
        pass


def walk_children(node, found):
    for i in range(node.get_child_count()):
        child = node.get_child_at_index(i)
        if child is not None:
            walk(child, found)


def tree(app):
    nodes = []
    try:
        walk_children(app, nodes)
    except GLib.Error:
        # The application is gone.
        pass
    return nodes


def named(nodes, name, role=None):
    for node in nodes:
        try:
            if (node.get_name() or "") == name and (role is None or node.get_role() == role):
                return node
        except GLib.Error:
            continue
    return None


READER = []


def type_key(keysym):
    """One key pressed and released through the X server; with the screen
    reader listening, the window waits for its answer on each, so its events
    are taken here until it has heard both."""
    heard = READER[0].keys if READER else 0
    Atspi.generate_keyboard_event(keysym, None, Atspi.KeySynthType.SYM)
    if READER:
        wait_for(lambda: READER[0].keys >= heard + 2, 2)


def focused(app):
    """The name of the object that has the keyboard focus, or None."""
    for node in tree(app):
        try:
            if node.get_state_set().contains(Atspi.StateType.FOCUSED):
                return node.get_name() or ""
        except GLib.Error:
            continue
    return None


def press(node):
    try:
        names = [node.get_action_name(i) for i in range(node.get_n_actions())]
        if "Press" in names:
            node.do_action(names.index("Press"))
            return True
    except GLib.Error:
        pass
    return False


def press_when_there(app, matches, seconds=10):
    """Presses the first object whose name and role `matches`, once it is there and takes the press."""
    def attempt():
        for node in tree(app):
            try:
                if matches(node.get_name() or "", node.get_role()) and press(node):
                    return True
            except GLib.Error:
                continue
        return False

    return wait_for(attempt, seconds)


def round_of_use(app, x11, window, number, done):
    nodes = tree(app)
    # Fields: a screen reader's user types new values through the text interface.
    for node in nodes:
        name = node.get_name() or ""
        if node.get_role() in (R.TEXT, R.ENTRY) and ("号旋钮" in name and "27号旋钮" not in name):
            try:
                node.set_text_contents("2" if "通道" in name else str(60 + number))
                done["typed"] += 1
            except GLib.Error:
                pass
    tree(app)
    # The keyboard: focus moves through the window, a screen reader follows.
    before = focused(app)
    x11.focus(window)
    for _ in range(41):
        type_key(TAB)
    if wait_for(lambda: focused(app) not in (None, before), 10):
        done["tabbed"] += 1
    # A few set buttons, then set all, which runs to its end.
    for knob in (0, 5, 13):
        if press_when_there(app, lambda name, role, k=knob: name == f"{k}号旋钮 设置" and role == R.PUSH_BUTTON):
            done["set buttons"] += 1
    if press_when_there(app, lambda name, role: name.startswith("全部设置(Set All)") and role == R.PUSH_BUTTON):
        done["set all"] += 1
        wait_for(lambda: named(tree(app), "全部设置(Set All)", R.PUSH_BUTTON) is not None, 30)
    # Both file dialogs, opened and cancelled.
    for opener in ("导入配置(Import Config)", "导出配置(Export Config)"):
        if press_when_there(app, lambda name, role, o=opener: name == o and role == R.PUSH_BUTTON):
            if press_when_there(app, lambda name, role: name == "取消(Cancel)" and role == R.PUSH_BUTTON):
                done["dialogs"] += 1
            wait_for(lambda: named(tree(app), "取消(Cancel)", R.PUSH_BUTTON) is None, 10)
    # The monitor, opened and closed: each press waits for the last one's state.
    for now in ("已收起(collapsed)", "已展开(expanded)"):
        if press_when_there(app, lambda name, role, n=now: name == "监视器(Monitor) " + n):
            done["monitor"] += 1
    # Resized large and back, the tree read after each.
    for width, height in ((1900, 1000), (1000, 700), (1400, 850)):
        x11.resize(window, width, height)
        wait_for(lambda: False, 0.2)
        tree(app)


def with_export_dialog_open(app, x11, window):
    return (press_when_there(app, lambda name, role: name == "导出配置(Export Config)" and role == R.PUSH_BUTTON)
            and wait_for(lambda: named(tree(app), "取消(Cancel)", R.PUSH_BUTTON) is not None, 10))


def with_set_all_running(app, x11, window):
    return press_when_there(app, lambda name, role: name.startswith("全部设置(Set All)") and role == R.PUSH_BUTTON)


def with_type_list_open(app, x11, window):
    # Focus on knob 3's type menu, then Space, as the keyboard opens it.
    def focus():
        for node in tree(app):
            try:
                if (node.get_name() or "").startswith("3号旋钮 消息类型") and node.get_role() == R.COMBO_BOX:
                    return node.grab_focus()
            except GLib.Error:
                continue
        return False

    def listed():
        return any(node.get_role() in (R.LIST_ITEM, R.MENU_ITEM) and (node.get_name() or "") == "Note Off"
                   for node in tree(app))

    if not wait_for(focus, 10):
        return False
    x11.focus(window)
    type_key(SPACE)
    return wait_for(listed, 10)


CLOSING_STATES = [
    ("at rest", lambda app, x11, window: True),
    ("with the save dialog open", with_export_dialog_open),
    ("while set all runs", with_set_all_running),
    ("with a type menu's list open", with_type_list_open),
]


class ScreenReader:
    """Listens as Orca does: every key goes past it before the window takes it,
    and on each event it reads the object the event is about, while the
    window goes on. Without listeners the window's bridge sends none of this."""

    EVENTS = ("object:state-changed:focused", "object:text-changed", "object:children-changed",
              "object:property-change:accessible-name", "object:state-changed:showing", "window:")

    def __init__(self):
        self.keys = 0
        self.events = 0
        self.key_listener = Atspi.DeviceListener.new(self.key)
        Atspi.register_keystroke_listener(
            self.key_listener, None, 0,
            (1 << Atspi.EventType.KEY_PRESSED_EVENT) | (1 << Atspi.EventType.KEY_RELEASED_EVENT),
            Atspi.KeyListenerSyncType.SYNCHRONOUS | Atspi.KeyListenerSyncType.CANCONSUME)
        self.listener = Atspi.EventListener.new(self.event)
        for name in ScreenReader.EVENTS:
            self.listener.register(name)

    def key(self, event):
        self.keys += 1
        return False  # not consumed: the window takes the key

    def event(self, event):
        self.events += 1
        try:
            if event.source is not None:
                event.source.get_name()
                event.source.get_role()
                event.source.get_state_set()
        except GLib.Error:
            pass


def main():
    rounds = int(sys.argv[1]) if len(sys.argv) > 1 else 3
    pid = int(os.environ["DIALCRAFT_WINDOW_PID"])
    app = find_application("dialcraft", 30)
    if app is None:
        print("no application named dialcraft on the accessibility bus")
        return 1
    reader = ScreenReader()
    READER.append(reader)
    x11 = X11()
    window = []
    if not wait_for(lambda: window.append(x11.window_of(pid)) or window[-1] is not None, 30):
        print(f"no X window of process {pid}")
        return 1
    done = {"typed": 0, "tabbed": 0, "set buttons": 0, "set all": 0, "dialogs": 0, "monitor": 0}
    for number in range(rounds):
        round_of_use(app, x11, window[-1], number, done)
    objects = len(tree(app))
    # Each round must have done each thing: a session that found nothing to
    # use proves nothing about the close after it.
    expected = {"typed": 54 * rounds, "tabbed": rounds, "set buttons": 3 * rounds, "set all": rounds, "dialogs": 2 * rounds,
                "monitor": 2 * rounds}
    if done != expected:
        print(f"the session did {done}, expected {expected}")
        return 1
    # Each run closes the window in another state the user can leave it in.
    state = CLOSING_STATES[(int(os.environ.get("DIALCRAFT_SESSION_RUN", "1")) - 1) % len(CLOSING_STATES)]
    if not state[1](app, x11, window[-1]):
        print(f"could not leave the window {state[0]} before closing it")
        for node in tree(app):
            if node.get_role() not in (R.LABEL, R.STATIC, R.PUSH_BUTTON, R.TEXT, R.PANEL, R.FILLER):
                print(" ", node.get_role_name(), repr(node.get_name()),
                      node.get_state_set().contains(Atspi.StateType.FOCUSED))
        return 1
    x11.close(window[-1])
    # The tree is read while the window goes, as a screen reader still would.
    def read_until_ended():
        tree(app)
        return not running(pid)

    ended = wait_for(read_until_ended, 30)
    print(f"{rounds} rounds; {objects} objects in the last tree; {reader.keys} keys and {reader.events} events "
          f"heard; the window was closed {state[0]}")
    if not ended:
        print("the window did not end within 30 s of being closed")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/python3
"""Checks the running window from outside, over AT-SPI, as a screen reader sees it.

Walks the accessibility tree of the application "dialcraft" and fails when a
usable control has no name, when a knob panel's control does not name its knob,
when the placeholder panel's controls are reported usable, or when a symbol
glyph is read out. Then presses knob 5's set button through its AT-SPI "Press"
action and waits for the text area to announce the set action's message.
Prints the tree it walked when a check fails.
"""
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

R = Atspi.Role
INTERACTIVE = {
    R.PUSH_BUTTON, R.TOGGLE_BUTTON, R.COMBO_BOX, R.TEXT, R.ENTRY, R.PASSWORD_TEXT,
    R.CHECK_BOX, R.RADIO_BUTTON, R.SPIN_BUTTON, R.SLIDER, R.SCROLL_BAR, R.MENU_ITEM,
}
SYMBOLS = {"\u273D", "\u2601"}


def find_application(name, seconds):
    deadline = GLib.get_monotonic_time() + seconds * 1_000_000
    while GLib.get_monotonic_time() < deadline:
        desktop = Atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            app = desktop.get_child_at_index(i)
            if app is not None and app.get_name() == name:
                return app
        GLib.usleep(200_000)
    return None


def walk(node, depth, found):
    states = node.get_state_set()
    if not states.contains(Atspi.StateType.SHOWING):
        return
    found.append((node, depth))
    # A combo box's inner text only shows its value, which the combo box's
    # own name carries; a screen reader reads the combo box.
    if node.get_role() == R.COMBO_BOX:
        return
    for i in range(node.get_child_count()):
        child = node.get_child_at_index(i)
        if child is not None:
            walk(child, depth + 1, found)


def describe(node):
    states = node.get_state_set()
    flags = [s for s, t in (("enabled", Atspi.StateType.ENABLED), ("focusable", Atspi.StateType.FOCUSABLE))
             if states.contains(t)]
    return f"{node.get_role_name()} {node.get_name()!r} {' '.join(flags)}"


def main():
    app = find_application("dialcraft", 30)
    if app is None:
        print("no application named dialcraft on the accessibility bus")
        return 1
    nodes = []
    for i in range(app.get_child_count()):
        walk(app.get_child_at_index(i), 0, nodes)
    failures = []

    set_buttons = {}
    for node, _ in nodes:
        role = node.get_role()
        name = node.get_name() or ""
        states = node.get_state_set()
        interactive = role in INTERACTIVE or (
            states.contains(Atspi.StateType.FOCUSABLE) and role not in (R.LABEL, R.STATIC))
        if any(symbol in name for symbol in SYMBOLS):
            failures.append(f"symbol read out: {describe(node)}")
        if not interactive:
            continue
        if not name.strip():
            failures.append(f"unnamed: {describe(node)}")
        if role == R.PUSH_BUTTON and name.endswith("号旋钮 设置"):
            set_buttons[int(name.split("号旋钮")[0])] = node
        if name.startswith("27号旋钮 ") and states.contains(Atspi.StateType.ENABLED):
            failures.append(f"placeholder control reported enabled: {describe(node)}")

    if sorted(set_buttons) != list(range(28)):
        failures.append(f"set buttons found for knobs {sorted(set_buttons)}")
    knob27 = [n for n, _ in nodes if (n.get_name() or "").startswith("27号旋钮 ")]
    if len(knob27) != 4:
        failures.append(f"{len(knob27)} controls of the placeholder panel, expected 4")

    # The press action runs the set action; the text area announces its message.
    announced = []

    def on_text(event):
        if event.source is not None and event.source.get_name() == "信息(Messages)":
            announced.append(str(event.any_data))

    listener = Atspi.EventListener.new(on_text)
    listener.register("object:text-changed:insert")
    button = set_buttons.get(5)
    if button is not None:
        names = [Atspi.Action.get_action_name(button, i) for i in range(Atspi.Action.get_n_actions(button))]
        if "Press" not in names:
            failures.append(f"knob 5's set button offers {names}, no Press")
        else:
            Atspi.Action.do_action(button, names.index("Press"))
            loop = GLib.MainLoop()
            GLib.timeout_add(5000, loop.quit)

            def check():
                if any("参数错误-MIDI通道" in text for text in announced):
                    loop.quit()
                    return False
                return True

            GLib.timeout_add(50, check)
            loop.run()
            if not any("参数错误-MIDI通道" in text for text in announced):
                failures.append(f"no announcement of the set action's message; text changes seen: {announced}")
    listener.deregister("object:text-changed:insert")

    interactive_count = sum(1 for n, _ in nodes if n.get_role() in INTERACTIVE)
    print(f"walked {len(nodes)} objects, {interactive_count} controls, {len(set_buttons)} set buttons")
    if failures:
        for node, depth in nodes:
            print("  " * depth + describe(node))
        for failure in failures:
            print("FAIL:", failure)
        return 1
    print("every control is named; placeholder disabled; press action and announcement work")
    return 0


if __name__ == "__main__":
    sys.exit(main())

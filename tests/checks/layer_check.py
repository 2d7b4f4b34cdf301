#!/usr/bin/env python3
"""The layer order, checked on what the build really does.

Reads build/link_graph.txt (cmake/link_graph.cmake: every target of src/,
tools/, tests/ and bench/, what it links, its sources) and the include roots
in build/include_roots/ (cmake/include_roots.cmake: which library exports
which header), then fails on
  - a link against the order: a library linking a layer above its own, or
    one it may not use (the model links no MIDI host, the window library no
    ALSA host, the tools' libraries nothing of the window or the model);
  - an include of a header whose library the including target does not link
    (directly or through the libraries it links);
  - an include that climbs out of its folder ("../") or names a header of
    ours with angle brackets;
  - a target of ours that the order does not place.

  layer_check.py BUILD_DIR             check the build
  layer_check.py BUILD_DIR --self-test also show that a wrong arrow, a wrong
                                       include and an unplaced target fail
"""
import os
import re
import sys

# The layers of the order and what each may link, of ours.
BELOW = {
    "base": set(),
    "seam": {"decode", "base"},
    "decode": {"base"},
    "alsa": {"seam", "decode", "base"},
    "sim": {"seam", "decode", "base"},
    "link": {"seam", "decode", "base"},
    "model": {"decode", "base"},
    "actions": {"model", "link", "decode", "seam", "base"},
    "ui": {"ui", "actions", "model", "link", "decode", "seam", "base"},
    "cli": {"actions", "model", "link", "decode", "seam", "base"},
    "tools_lib": {"tools_lib", "decode", "seam", "base"},
    "test_support": {"test_support", "actions", "model", "link", "alsa", "sim", "decode", "seam", "base"},
}
# Programs sit on top: anything but tests.
PROGRAM_MAY_LINK = {"ui", "cli", "actions", "model", "link", "alsa", "sim", "decode", "seam", "base", "tools_lib"}

LIBRARIES = {
    "dialcraft_base": "base",
    "dialcraft_midi_seam": "seam",
    "dialcraft_midi_decode": "decode",
    "dialcraft_midi_alsa": "alsa",
    "dialcraft_midi_sim": "sim",
    "dialcraft_midi": "link",
    "dialcraft_model": "model",
    "dialcraft_actions": "actions",
    "dialcraft_ui": "ui",
    "dialcraft_uiplugin": "ui",
    "dialcraft_cli": "cli",
    "controller_emulator_logic": "tools_lib",
    "virtual_controller_logic": "tools_lib",
    "dialcraft_test_support": "test_support",
    "dialcraft_gtest_qt_main": "test_support",
    "midi_host_contract": "test_support",
}
PROGRAMS = {"dialcraft", "dialcraft-cli", "dialcraft-virtual-controller", "controller_emulator"}


def layer_of(name, folder, source_root):
    if name in LIBRARIES:
        return LIBRARIES[name]
    if name in PROGRAMS:
        return "program"
    rel = os.path.relpath(folder, source_root)
    top = rel.split(os.sep)[0]
    if top in ("tests", "bench"):
        return "test"  # test and benchmark programs may use every layer
    # Qt's own helper targets of the QML module (resources, cache, plugin init)
    if re.match(r"^dialcraft_ui(plugin)?_", name) or re.match(r"^dialcraft_ui(plugin)?_init$", name):
        return "ui"
    return None


def read_graph(build):
    targets = {}
    with open(os.path.join(build, "link_graph.txt"), encoding="utf-8") as f:
        for line in f:
            parts = line.rstrip("\n").split(" ", 2)
            if len(parts) < 2:
                continue
            kind, name = parts[0], parts[1]
            rest = parts[2] if len(parts) > 2 else ""
            t = targets.setdefault(name, {"links": [], "sources": [], "folder": "", "type": ""})
            if kind == "target":
                t["type"], t["folder"] = rest.split(" ", 1)
            elif kind == "links":
                t["links"] = [x for x in rest.split(";") if x]
            elif kind == "sources":
                t["sources"] = [x for x in rest.split(";") if x]
    return targets


def read_roots(build):
    """header as included -> (target, private)"""
    owners = {}
    base = os.path.join(build, "include_roots")
    if not os.path.isdir(base):
        return owners
    for root_name in os.listdir(base):
        private = root_name.endswith(".private")
        target = root_name[: -len(".private")] if private else root_name
        root = os.path.join(base, root_name)
        for folder, _, files in os.walk(root):
            for f in files:
                rel = os.path.relpath(os.path.join(folder, f), root)
                owners[rel] = (target, private)
    return owners


def closure(targets, name):
    seen, todo = set(), [name]
    while todo:
        for dep in targets.get(todo.pop(), {}).get("links", []):
            dep = re.sub(r"^\$<LINK_ONLY:(.*)>$", r"\1", dep)
            if dep in targets and dep not in seen:
                seen.add(dep)
                todo.append(dep)
    return seen


INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def check(build, source_root, targets, owners, extra_includes=None):
    errors = []
    for name, t in sorted(targets.items()):
        layer = layer_of(name, t["folder"], source_root)
        if layer is None:
            errors.append(f"{name}: a target the layer order does not place (tests/checks/layer_check.py)")
            continue
        for dep in t["links"]:
            dep = re.sub(r"^\$<LINK_ONLY:(.*)>$", r"\1", dep)
            if dep not in targets:
                continue  # not ours: Qt, ALSA, GoogleTest, ...
            dep_layer = layer_of(dep, targets[dep]["folder"], source_root)
            if layer == "test":
                allowed = dep_layer != "program"
            elif layer == "program":
                allowed = dep_layer in PROGRAM_MAY_LINK
            else:
                allowed = dep_layer in BELOW[layer]
            if not allowed:
                errors.append(f"{name} ({layer}) links {dep} ({dep_layer}): against the layer order")
        reach = closure(targets, name)
        sources = [s if os.path.isabs(s) else os.path.join(t["folder"], s) for s in t["sources"]]
        for path in sources:
            if not path.endswith((".h", ".cpp", ".c")) or not path.startswith(source_root + os.sep):
                continue
            try:
                with open(path, encoding="utf-8") as f:
                    lines = f.readlines()
            except OSError:
                continue
            lines += (extra_includes or {}).get((name, os.path.relpath(path, source_root)), [])
            for number, text in enumerate(lines, 1):
                m = INCLUDE.match(text)
                if not m:
                    continue
                bracket, header = m.groups()
                where = f"{os.path.relpath(path, source_root)}:{number}"
                if header.startswith("../") or "/../" in header:
                    errors.append(f"{where}: includes {header}: climbs out of its folder")
                    continue
                owner = owners.get(header)
                if owner is None:
                    continue  # a system, Qt, generated or same-folder header
                if bracket == "<":
                    errors.append(f"{where}: includes our {header} with angle brackets")
                owner_target, private = owner
                if owner_target == name:
                    continue
                if private or owner_target not in reach:
                    errors.append(f"{where}: {name} includes {header} of {owner_target}, which it does not link")
    return errors


def main():
    build = os.path.abspath(sys.argv[1])
    source_root = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
    targets = read_graph(build)
    owners = read_roots(build)
    if "dialcraft_model" not in targets or "model/global_state.h" not in owners:
        print("FAIL: the link graph or the include roots are missing; configure the build first")
        return 1
    errors = check(build, source_root, targets, owners)
    for e in errors:
        print("FAIL:", e)
    if errors:
        return 1
    print(f"{len(targets)} targets, {len(owners)} exported headers: every link and include points down")
    if "--self-test" not in sys.argv:
        return 0
    # Each of these must be caught.
    cases = []
    wrong = {k: dict(v, links=list(v["links"])) for k, v in targets.items()}
    wrong["dialcraft_model"]["links"].append("dialcraft_actions")
    cases.append(("the model linking the actions", check(build, source_root, wrong, owners)))
    wrong = {k: dict(v, links=list(v["links"])) for k, v in targets.items()}
    wrong["dialcraft_ui"]["links"].append("dialcraft_midi_alsa")
    cases.append(("the window library linking the ALSA host", check(build, source_root, wrong, owners)))
    extra = {("dialcraft_model", "src/model/global_state.cpp"): ['#include "ui/shell/app_shell.h"\n']}
    cases.append(("a model file including a window header", check(build, source_root, targets, owners, extra)))
    extra = {("dialcraft_midi", "src/midi/host_selection.cpp"): ['#include "midi/alsa/host_state.h"\n']}
    cases.append(("the link including the ALSA host's private header", check(build, source_root, targets, owners, extra)))
    extra = {("dialcraft_test_support", "tests/support/console_capture.cpp"): ['#include "cli/cli.h"\n']}
    cases.append(("test support including the command line", check(build, source_root, targets, owners, extra)))
    wrong = dict(targets)
    wrong["stray_library"] = {"links": [], "sources": [], "folder": os.path.join(source_root, "src", "model"), "type": "STATIC_LIBRARY"}
    cases.append(("a library the order does not place", check(build, source_root, wrong, owners)))
    failed = 0
    for what, errs in cases:
        if errs:
            print(f"self-test: {what}: caught ({errs[0]})")
        else:
            print(f"self-test FAIL: {what}: not caught")
            failed += 1
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())

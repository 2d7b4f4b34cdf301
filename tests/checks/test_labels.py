#!/usr/bin/env python3
"""Every ctest test carries a tier label, so `scripts/test --quick`,
`scripts/flake-hunt` and the sanitizer passes select by label and never miss
a test that was added without one.

Usage: test_labels.py CTEST BUILD_DIR
"""
import json
import subprocess
import sys

TIERS = {"unit", "cli", "checks", "ui", "packaging", "usb", "fuzz"}


def main() -> int:
    ctest, build = sys.argv[1], sys.argv[2]
    listing = subprocess.run([ctest, "--test-dir", build, "--show-only=json-v1"],
                             check=True, capture_output=True, text=True).stdout
    bad = []
    count = 0
    for test in json.loads(listing)["tests"]:
        count += 1
        labels = set()
        for prop in test.get("properties", []):
            if prop["name"] == "LABELS":
                labels = set(prop["value"])
        if not labels & TIERS:
            bad.append(f"{test['name']}: labels {sorted(labels) or 'none'}")
    for line in bad:
        print(f"FAIL: no tier label ({', '.join(sorted(TIERS))}): {line}")
    if bad:
        return 1
    print(f"{count} tests, each with a tier label")
    return 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env bash
# The installed AppStream metainfo passes `appstreamcli validate --no-net`
# (errors and warnings fail it), and its newest release is this version.
# Usage: metainfo_test.sh PREFIX VERSION
set -euo pipefail
prefix=$1 version=$2
file=$prefix/share/metainfo/io.github.dialcraft.Dialcraft.metainfo.xml

appstreamcli validate --no-net "$file" || { echo "FAIL: appstreamcli validate"; exit 1; }
first_release=$(grep -m1 -o '<release version="[^"]*"' "$file")
[[ $first_release == "<release version=\"$version\"" ]] ||
  { echo "FAIL: newest release is $first_release, the project is $version"; exit 1; }
# The launchable is the installed desktop entry.
launchable=$(sed -n 's:.*<launchable type="desktop-id">\(.*\)</launchable>.*:\1:p' "$file")
[[ -f $prefix/share/applications/$launchable ]] || { echo "FAIL: launchable '$launchable' not installed"; exit 1; }

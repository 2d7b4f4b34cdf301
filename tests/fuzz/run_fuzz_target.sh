#!/usr/bin/env bash
# Runs one fuzz target from its seed corpus with a fresh working corpus, so
# the seeds in the repository are never written to.
#
#   run_fuzz_target.sh <program> <seed folder> <work folder> [libFuzzer options...]
#
# New inputs go to <work folder>/corpus, a crash or a broken property to
# <work folder>/crash-<sha1> (printed with the way to reproduce it).
set -euo pipefail
program=$1 seeds=$2 work=$3
shift 3
rm -rf "$work/corpus"
mkdir -p "$work/corpus"
exec "$program" -artifact_prefix="$work/" -timeout=10 -print_final_stats=1 "$@" "$work/corpus" "$seeds"

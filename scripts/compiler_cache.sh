# shellcheck shell=bash
# Sourced by scripts/test, scripts/sanitize, scripts/fuzz and scripts/package:
# every build goes through ccache when it is there, with paths below the tree
# made relative, so a fresh clone in another folder (as CI makes one) finds
# what an earlier build of the same sources left in the cache.
# Read by the scripts that source this file.
# shellcheck disable=SC2034
cache_launcher=()
if command -v ccache >/dev/null; then
  CCACHE_BASEDIR=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
  export CCACHE_BASEDIR
  # The debug information keeps the folder it was first built in; the code
  # is the same.
  export CCACHE_NOHASHDIR=1
  # shellcheck disable=SC2034
  cache_launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
fi

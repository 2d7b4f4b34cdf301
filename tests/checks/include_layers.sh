#!/usr/bin/env bash
# Fails when a file of one layer includes a header of a layer above it.
# The layers, lowest first: base, midi, model, actions, then ui and cli,
# which stand side by side and include nothing of each other.
set -euo pipefail
src="${1:?usage: include_layers.sh SRC_DIR}"

rank() {
  case "$1" in
    base) echo 0 ;;
    midi) echo 1 ;;
    model) echo 2 ;;
    actions) echo 3 ;;
    ui | cli) echo 4 ;;
    *) echo -1 ;;
  esac
}

status=0
while IFS= read -r -d '' file; do
  rel="${file#"$src"/}"
  layer="${rel%%/*}"
  own=$(rank "$layer")
  [ "$own" -ge 0 ] || continue
  while IFS= read -r line; do
    target="${line#*\"}"
    target="${target%%\"*}"
    [[ "$target" == */* ]] || continue
    used="${target%%/*}"
    theirs=$(rank "$used")
    [ "$theirs" -ge 0 ] || continue
    if [ "$theirs" -gt "$own" ] || { [ "$theirs" -eq "$own" ] && [ "$used" != "$layer" ]; }; then
      echo "$rel: $layer includes $target from $used, which is not below it"
      status=1
    fi
  done < <(grep -E '^[[:space:]]*#[[:space:]]*include[[:space:]]*"' "$file" || true)
done < <(find "$src" -type f \( -name '*.h' -o -name '*.cpp' \) -print0)

[ "$status" -eq 0 ] && echo "every include points down the layers"
exit "$status"

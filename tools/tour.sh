#!/usr/bin/env bash
# tour.sh BIN OUT: drives the real windows of the programs in BIN through the main job and leaves
# numbered PNG files in OUT, with a screen reader listening. It has its own display, home of settings, registry and data, so that
# neither the user's own nor an earlier tour's can matter.
name=tour
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 2)) || fail "usage: tools/tour.sh BIN OUT"
bin=$1
mkdir -p "$2"
out=$(cd "$2" && pwd -P)
for program in tour reader yrwregister libyrwnotes.so; do
    [[ -f $bin/$program ]] || fail "$bin/$program is not there: build first"
done

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export XDG_DATA_HOME=$home/data XDG_CONFIG_HOME=$home/config XDG_STATE_HOME=$home/state
export XDG_RUNTIME_DIR=$home/runtime
mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME" "$XDG_STATE_HOME"
mkdir -m 700 "$XDG_RUNTIME_DIR"

"$bin/yrwregister" "$bin/libyrwnotes.so"
rm -f "$out"/[0-9]*.png
"$root/tools/with-display.sh" --reader "$bin/reader" "$bin/tour" --out "$out" ||
    fail "a step of the tour failed; what the windows showed is in $out"

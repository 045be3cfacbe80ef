#!/usr/bin/env bash
# under_faketime.sh BIN: the reference host with the add-in, all of it, under a clock that starts
# before a change to summer time and runs sixty times as fast. A reminder that is due after the
# missing hour comes up then, and its answer is stored with that time. On a display of its own.
name=under_faketime
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/common.sh"

(($# == 1)) || fail "usage: tests/addin/under_faketime.sh BIN"
command -v faketime >/dev/null || fail "faketime is missing; tools/setup.sh installs it"
if [[ -z ${UNDER_FAKETIME_HOME:-} ]]; then
    home=$(mktemp -d)
    trap 'rm -rf "$home"' EXIT
    UNDER_FAKETIME_HOME=$home "$root/tools/with-display.sh" "$0" "$1"
    exit
fi

bin=$1
home=$UNDER_FAKETIME_HOME
export XDG_DATA_HOME=$home/data XDG_CONFIG_HOME=$home/config XDG_STATE_HOME=$home/state
export XDG_RUNTIME_DIR=$home/runtime TZ=Europe/Berlin
mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME" "$XDG_STATE_HOME" "$home/desk"
mkdir -m 700 "$XDG_RUNTIME_DIR"
notes=("$bin/yrwnotes" --data "$home/desk" --user ANNA)

"$bin/yrwregister" "$bin/libyrwnotes.so"
cp "$bin/DB/YRWNOTES/Notes.mdb" "$home/desk/"
QT_QPA_PLATFORM=offscreen "$bin/busydesk" --data "$home/desk" --make # the host's users
"${notes[@]}" add --subject "After the missing hour" --remind me --at "2026-03-29 03:05" >/dev/null

faketime -f '@2026-03-29 01:57:00 x60' "$bin/yrwhost" --data "$home/desk" --user ANNA &
host=$!
trap 'kill "$host" 2>/dev/null || true' EXIT

window_is_there() {
    xdotool search --onlyvisible --name "$1" >/dev/null 2>&1
}
# wait_for SECONDS WHAT COMMAND…
wait_for() {
    local seconds=$1 what=$2
    shift 2
    for ((tries = 0; tries < seconds * 10; ++tries)); do
        "$@" && return
        kill -0 "$host" 2>/dev/null || fail "the host ended before $what"
        sleep 0.1
    done
    fail "$what did not happen"
}
is_dismissed() {
    "${notes[@]}" reminders --json | grep -q '"Status": *4'
}

wait_for 30 "the host's window" window_is_there 'Yarrowen Desk'
window_is_there '^YRW Reminder' && fail "the reminder came before the clocks had changed"
wait_for 60 "the reminder" window_is_there '^YRW Reminder'
for ((tries = 0; tries < 50; ++tries)); do
    xdotool key ctrl+alt+r
    sleep 0.2
    xdotool key alt+d
    sleep 0.2
    is_dismissed && break
done
is_dismissed || fail "the answer was not stored"
"${notes[@]}" reminders --json | grep -q '"LastDate": *"2026-03-29[ T]0[34]:' ||
    fail "the answer does not have the time of the process: $("${notes[@]}" reminders --json)"
say "the reminder came after the missing hour and was answered"

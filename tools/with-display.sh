#!/usr/bin/env bash
# with-display.sh COMMAND…: runs a command on a display of its own: Xvfb on a free number, with a
# window manager. Both end with the command, whose exit status is passed on.
name=with-display
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($#)) || fail "which command? Usage: tools/with-display.sh COMMAND…"
for program in Xvfb openbox xprop; do
    command -v "$program" >/dev/null || fail "$program is missing; tools/setup.sh installs it"
done

scratch=$(mktemp -d)
started=()

end_all() {
    local process
    for process in "${started[@]}"; do
        kill "$process" 2>/dev/null || true
        wait "$process" 2>/dev/null || true
    done
    rm -rf "$scratch"
}
trap end_all EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

# The server writes the number of the display it found, and only once it takes connections.
mkfifo "$scratch/display"
exec {number_pipe}<>"$scratch/display"
Xvfb -displayfd 3 -screen 0 1600x1200x24 -nolisten tcp -noreset \
    3>"$scratch/display" >"$scratch/xvfb.log" 2>&1 </dev/null &
started+=($!)
number=
for ((tries = 0; tries < 60; ++tries)); do
    read -r -t 1 -u "$number_pipe" number && break
    kill -0 "${started[0]}" 2>/dev/null || break
done
if [[ -z $number ]]; then
    tail -n 20 "$scratch/xvfb.log" >&2
    fail "Xvfb did not start"
fi
exec {number_pipe}<&-
export DISPLAY=:$number QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY

openbox --sm-disable >"$scratch/openbox.log" 2>&1 &
started=("$!" "${started[@]}") # the window manager ends before its server
window_manager_is_up() {
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'
}
for ((tries = 0; ; ++tries)); do
    window_manager_is_up && break
    if ((tries == 300)) || ! kill -0 "${started[0]}" 2>/dev/null; then
        tail -n 20 "$scratch/openbox.log" >&2
        fail "the window manager did not start"
    fi
    sleep 0.1
done

# In the background and waited for, so that a signal to this script ends everything at once.
"$@" <&0 &
command_process=$!
started=("$command_process" "${started[@]}")
status=0
wait "$command_process" || status=$?
exit "$status"

#!/usr/bin/env bash
# with-display.sh [--screen WIDTHxHEIGHT] [--reader PROGRAM] COMMAND…: runs a command on a display of
# its own: Xvfb on a free number, with a window manager. All end with the command, whose exit status
# is passed on.
#   --screen  size of the screen in pixels, 1600x1200 by default
#   --reader  switches assistive technology on as a screen reader does: a session bus, the bus for
#             assistive programs, and the program (tests/reader), which listens there
name=with-display
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

screen=1600x1200
reader=
while [[ ${1-} == --* ]]; do
    case $1 in
        --screen) screen=${2-} && export YRW_SCREEN=$screen ;;
        --reader) reader=${2-} ;;
        *) fail "unknown option $1" ;;
    esac
    shift 2 || fail "$1 needs a value"
done
[[ $screen =~ ^[0-9]+x[0-9]+$ ]] || fail "a screen is given as 1024x600, not as '$screen'"
(($#)) || fail "which command? Usage: tools/with-display.sh [--screen SIZE] [--reader PROGRAM] COMMAND…"
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
Xvfb -displayfd 3 -screen 0 "${screen}x24" -nolisten tcp -noreset \
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

# The bus and the reader, which has the other bus started. The toolkit connects only to a bus that is there when it starts.
if [[ -n $reader ]]; then
    for program in dbus-daemon "$reader" /usr/libexec/at-spi-bus-launcher; do
        command -v "$program" >/dev/null || fail "$program is missing"
    done
    if [[ -z ${XDG_RUNTIME_DIR-} ]]; then
        mkdir -m 700 "$scratch/runtime"
        export XDG_RUNTIME_DIR=$scratch/runtime
    fi
    mkfifo "$scratch/answers"
    exec {answers}<>"$scratch/answers"
    answer() { # what a program writes first, or its log when it says nothing
        read -r -t 30 -u "$answers" line || {
            tail -n 20 "$1" >&2
            fail "assistive technology could not be switched on"
        }
    }
    dbus-daemon --session --nofork --nopidfile --print-address=3 3>"$scratch/answers" \
        >"$scratch/dbus.log" 2>&1 &
    started=("$!" "${started[@]}")
    answer "$scratch/dbus.log"
    export DBUS_SESSION_BUS_ADDRESS=$line
    "$reader" >"$scratch/answers" 2>"$scratch/reader.log" &
    started=("$!" "${started[@]}")
    answer "$scratch/reader.log"
    export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 YRW_READER=1
fi

# In the background and waited for, so that a signal to this script ends everything at once.
"$@" <&0 &
command_process=$!
started=("$command_process" "${started[@]}")
status=0
wait "$command_process" || status=$?
exit "$status"

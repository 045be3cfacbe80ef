#!/usr/bin/env bash
# two_hosts.sh BIN [COUNT]: two reference hosts with the add-in share one notes database with COUNT
# due reminders (else 20) on one display, and both answer until nothing is left. First one user sits
# at both, whose answer at the one closes the popup at the other; then two users, each with half of
# the reminders. A trigger in the database counts: each reminder has exactly one answer. The hosts'
# clock runs twenty times as fast, so that a minute's check comes every three seconds.
name=two_hosts
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/common.sh"

(($# == 1 || $# == 2)) || fail "usage: tests/addin/two_hosts.sh BIN [COUNT]"
command -v faketime >/dev/null || fail "faketime is missing; tools/setup.sh installs it"
if [[ -z ${TWO_HOSTS_HOME:-} ]]; then
    home=$(mktemp -d)
    trap 'rm -rf "$home"' EXIT
    TWO_HOSTS_HOME=$home "$root/tools/with-display.sh" "$0" "$@"
    exit
fi

bin=$1
count=${2:-20}
home=$TWO_HOSTS_HOME
export XDG_DATA_HOME=$home/data XDG_CONFIG_HOME=$home/config XDG_STATE_HOME=$home/state
export XDG_RUNTIME_DIR=$home/runtime
mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME" "$XDG_STATE_HOME"
mkdir -m 700 "$XDG_RUNTIME_DIR"
"$bin/yrwregister" "$bin/libyrwnotes.so"

# in_database TEXT: runs one statement, prints its first value.
in_database() {
    python3 - "$desk/Notes.mdb" "$1" <<'PYTHON'
import sqlite3
import sys

with sqlite3.connect(sys.argv[1], timeout=30) as database:
    row = database.execute(sys.argv[2]).fetchone()
    print(row[0] if row else "")
PYTHON
}

fill() {
    in_database "INSERT INTO tblNotes (Subject, Status, OwnerComponentProgID, OwnerObjectKey,
        OwnerRecordID) VALUES ('Shared', 1, 'YRWDesk.Application', 'cu', 1)" >/dev/null
    in_database "CREATE TABLE tblAnswers (ReminderID LONG)" >/dev/null
    in_database "CREATE TRIGGER countAnswers AFTER UPDATE OF Status ON tblReminders BEGIN
        INSERT INTO tblAnswers VALUES (new.RecordID); END" >/dev/null
    in_database "INSERT INTO tblReminders (NoteID, UserID, NextDate, Status)
        WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < $count)
        SELECT 1, 1 + i % $users, '2020-01-01 00:00:00', 1 FROM n" >/dev/null
}

# visible PROCESS NAME: the first window of a process with that name.
visible() {
    xdotool search --onlyvisible --all --pid "$1" --name "$2" 2>/dev/null | sed -n 1p || true
}
is_open() {
    [[ -n $(visible "$1" 'Yarrowen Desk') ]]
}
has_popup() {
    [[ -n $(visible "$1" '^YRW Reminder') ]]
}
# wait_for SECONDS WHAT COMMAND…
wait_for() {
    local seconds=$1 what=$2 tries
    shift 2
    for ((tries = 0; tries < seconds * 10; ++tries)); do
        "$@" && return
        sleep 0.1
    done
    fail "$what did not happen"
}
are_answered() {
    [[ $(in_database "SELECT Count(*) FROM tblReminders WHERE Status <> 4") == 0 ]]
}
no_popups() {
    ! has_popup "${hosts[0]}" && ! has_popup "${hosts[1]}"
}

# answer PROCESS: goes to the reminder in front at that host and dismisses it. Alt+D is pressed only
# where a reminder has the keys: anywhere else it could open a menu, which would take all that follow.
answer() {
    has_popup "$1" || return 0
    local window
    window=$(visible "$1" 'Yarrowen Desk')
    xdotool windowactivate "$window" 2>/dev/null || true # no window may be active yet
    sleep 0.1
    xdotool key ctrl+alt+r
    sleep 0.1
    case $(xdotool getactivewindow getwindowname 2>/dev/null) in
        'YRW Reminder'*) xdotool key alt+d || true ;;
    esac
    sleep 0.1
}

# play USERS: both hosts, for one user or for two, until all is answered.
play() {
    users=$1
    desk=$home/desk$users
    mkdir "$desk"
    cp "$bin/DB/YRWNOTES/Notes.mdb" "$desk/"
    QT_QPA_PLATFORM=offscreen "$bin/busydesk" --data "$desk" --make # the host's users
    fill
    hosts=()
    for code in ANNA "$([[ $users == 1 ]] && echo ANNA || echo BEN)"; do
        faketime -f '+0 x20' "$bin/yrwhost" --data "$desk" --user "$code" &
        wait_for 10 "the start of $code's host" pgrep -P $! >/dev/null
        hosts+=("$(pgrep -P $!)") # the host itself, below the command that bends its clock
        wait_for 60 "the window of $code" is_open "${hosts[-1]}"
    done
    trap 'kill "${hosts[@]}" 2>/dev/null || true' EXIT
    wait_for 120 "the first host's reminder" has_popup "${hosts[0]}"
    wait_for 120 "the second host's reminder" has_popup "${hosts[1]}"
    for ((round = 0; round < count * 4; ++round)); do
        are_answered && break
        answer "${hosts[round % 2]}"
    done
    are_answered || fail "not all of $count reminders were answered"
    wait_for 120 "the closing of what was answered elsewhere" no_popups
    answers=$(in_database "SELECT Count(*) FROM tblAnswers")
    [[ $answers == "$count" ]] || fail "$count reminders have $answers answers"
    kill "${hosts[@]}"
    wait
    say "$users user(s) at two hosts gave $count reminders one answer each"
}

play 1
play 2

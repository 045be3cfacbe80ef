#!/usr/bin/env bash
# two_desks.sh BIN: two reference hosts with the add-in on one notes database, answering due
# reminders at the same time: first both of the same user, then of two. Each reminder ends with
# exactly one answer, and what one host has answered closes by itself in the other. Both run under a
# fast clock, so that a minute's check takes a second. On a display of its own.
# YRW_REMINDERS: how many are due (12).
name=two_desks
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/common.sh"

(($# == 1)) || fail "usage: tests/addin/two_desks.sh BIN"
command -v faketime >/dev/null || fail "faketime is missing; tools/setup.sh installs it"
if [[ -z ${TWO_DESKS_HOME:-} ]]; then
    home=$(mktemp -d)
    trap 'rm -rf "$home"' EXIT
    TWO_DESKS_HOME=$home "$root/tools/with-display.sh" "$0" "$1"
    exit
fi

bin=$1
home=$TWO_DESKS_HOME
count=${YRW_REMINDERS:-12}
export XDG_DATA_HOME=$home/data XDG_CONFIG_HOME=$home/config XDG_STATE_HOME=$home/state
export XDG_RUNTIME_DIR=$home/runtime
mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME" "$XDG_STATE_HOME"
mkdir -m 700 "$XDG_RUNTIME_DIR"
"$bin/yrwregister" "$bin/libyrwnotes.so"
hosts=()
trap 'kill "${hosts[@]}" 2>/dev/null || true' EXIT

sql() {
    sqlite3 -cmd '.timeout 5000' "$desk/Notes.mdb" "$1"
}
popups() {
    { xdotool search --all --onlyvisible --pid "$1" --name '^YRW Reminder' 2>/dev/null || true; } |
        wc -l
}
has() {
    (($(popups "$1") == $2))
}
wait_for() {
    local what=$1
    shift
    for ((tries = 0; tries < 100 + count * 3; ++tries)); do
        "$@" && return
        sleep 0.1
    done
    fail "$what did not happen; popups: $(for host in "${hosts[@]}"; do popups "$host"; done)"
}
window_of() { # of a host
    xdotool search --all --onlyvisible --pid "$1" --name 'Yarrowen Desk' 2>/dev/null || true
}
# dismiss_in PLACE: the user of one of the two hosts dismisses the reminder in front; false when
# none comes. Any window may be gone by the time that its name is used.
dismiss_in() {
    xdotool windowactivate --sync "${windows[$1]}" 2>/dev/null || return 1
    xdotool key ctrl+alt+r
    for ((tries = 0; tries < 25; ++tries)); do
        if [[ $(xdotool getactivewindow getwindowname 2>/dev/null) == 'YRW Reminder'* ]]; then
            xdotool key alt+d
            return
        fi
        sleep 0.02
    done
    return 1
}

# start USER…: a fresh desk, the reminders shared out evenly, a host of each user.
start() {
    desk=$home/desk-$1-$2
    mkdir "$desk"
    cp "$bin/DB/YRWNOTES/Notes.mdb" "$desk/"
    "$bin/yrwnotes" --data "$desk" --user ANNA add --subject "Shared" --remind me \
        --at "2020-01-01 08:00" >/dev/null
    sql "CREATE TABLE tblAnswers (ReminderID, UserID, Status);
         CREATE TRIGGER noteAnswer AFTER UPDATE OF Status ON tblReminders BEGIN
             INSERT INTO tblAnswers VALUES (new.RecordID, new.UserID, new.Status); END;
         WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < $count - 1)
         INSERT INTO tblReminders (NoteID, UserID, OriginalDate, NextDate, Status)
             SELECT NoteID, 1 + i % $3, OriginalDate, datetime('2020-01-01', i || ' minutes'), 1
             FROM tblReminders, n;"
    hosts=()
    windows=()
    for user in "$1" "$2"; do
        faketime -f '+0 x60' "$bin/yrwhost" --data "$desk" --user "$user" &
        wrapper=$!
        for ((tries = 0; tries < 50; ++tries)); do
            host=$(pgrep -P "$wrapper" || true) # faketime stays around the program
            [[ -n $host ]] && break
            sleep 0.1
        done
        hosts+=("${host:?faketime did not start the host}")
        wait_for "the window of $user's host" window_is_there
        windows+=("$(window_of "$host")")
    done
}
window_is_there() {
    [[ -n $(window_of "${hosts[-1]}") ]]
}
# Both by turns, until neither has had one for a while.
answer_all() {
    local in_vain=0
    for ((round = 0; in_vain < 8; ++round)); do
        if dismiss_in $((round % 2)); then in_vain=0; else in_vain=$((in_vain + 1)); fi
    done
}
check_answers() {
    sleep 3 # two more checks
    has "${hosts[0]}" 0 && has "${hosts[1]}" 0 || fail "$1: a popup came back or stayed"
    local answers
    answers=$(sql "SELECT count(*), count(DISTINCT ReminderID), min(Status), max(Status)
                   FROM tblAnswers")
    [[ $answers == "$count|$count|4|4" ]] ||
        fail "$1: $count reminders have these answers, distinct, least and largest: $answers"
    kill "${hosts[@]}"
    wait || true
    say "$1: $count reminders, one answer each"
}

start ANNA ANNA 1
wait_for "all reminders at both desks" has "${hosts[0]}" "$count"
wait_for "all reminders at both desks" has "${hosts[1]}" "$count"
for ((i = 0; i < 30; ++i)); do
    (($(popups "${hosts[0]}") > count - 3)) || break
    dismiss_in 0 || true
    sleep 0.2
done
wait_for "the first desk's closing" has "${hosts[0]}" $((count - 3))
wait_for "the closing of what the other desk has answered" has "${hosts[1]}" $((count - 3))
answer_all
check_answers "one user at two desks"

start ANNA BEN 2
wait_for "each user's own reminders" has "${hosts[0]}" $((count / 2))
wait_for "each user's own reminders" has "${hosts[1]}" $((count / 2))
answer_all
check_answers "two users"

# Shared by the project's shell scripts, which source it after setting `name`.
# shellcheck shell=bash
set -Eeuo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
log_folder=$root/build/log
last_words=

# Compiled objects are shared between checkouts of the project, wherever they lie.
export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1

# say TEXT: one line about what is being done.
say() {
    printf '%s: %s\n' "${name:?}" "$1"
}

# fail TEXT: one clear line, then the end.
fail() {
    last_words=said
    printf '%s: %s\n' "${name:?}" "$1" >&2
    exit 1
}

# Any command that fails without having been caught ends in one line that names its place.
unexpected() {
    local status=$1 line=$2 command=$3
    if [[ -z $last_words ]]; then
        last_words=said
        printf '%s: line %s failed with status %s: %s\n' "$name" "$line" "$status" "$command" >&2
    fi
}
trap 'unexpected $? $LINENO "$BASH_COMMAND"' ERR

# quietly LOG TEXT COMMAND…: runs a step with its output in build/log/LOG.log; when it fails, shows
# the end of the output and then the one line.
quietly() {
    local log=$log_folder/$1.log text=$2
    shift 2
    mkdir -p "$log_folder"
    say "$text"
    if ! "$@" >"$log" 2>&1 </dev/null; then
        tail -n 60 "$log" >&2
        fail "$text failed; all of its output is in $log"
    fi
}

# configure PRESET: the build folder of a preset, made or refreshed.
configure() {
    quietly "configure-$1" "configuring ($1)" cmake -S "$root" --preset "$1"
}

# build PRESET TARGET…
build() {
    local preset=$1
    shift
    quietly "build-$preset" "building ($preset)" ninja -C "$root/build/$preset" "$@"
}

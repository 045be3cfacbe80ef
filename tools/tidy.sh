#!/usr/bin/env bash
# tidy.sh [FILE…]: clang-tidy on the given sources; without any, on those changed since the branch
# left origin/main. Where nothing tells what changed (a fresh clone of the main line), on a sample
# that moves on with every commit, so that in time each file has its turn.
name=tidy
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$root"
sample_size=25
preset=release

sources() {
    git ls-files '*.cpp' | grep -v -E '^(bench|examples|tests|tour)/|^cmake/'
}

# The sources that a change touches: themselves, or the one beside a changed header.
changed_sources() {
    git diff --name-only --diff-filter=d "$1" -- '*.cpp' '*.h' | sed -e 's/\.h$/.cpp/' | sort -u |
        grep -x -F -f - <(sources) || true
}

# At most so many of the lines read: every n-th, beginning at a place that the number of commits
# gives.
sample() {
    local -a all
    mapfile -t all
    local count=${#all[@]} step turn i
    step=$(((count + sample_size - 1) / sample_size))
    turn=$(git rev-list --count HEAD)
    for ((i = count ? turn % step : 0; i < count; i += step)); do
        printf '%s\n' "${all[i]}"
    done
}

chosen=("$@")
if ((${#chosen[@]} == 0)); then
    base=$(git merge-base HEAD origin/main 2>/dev/null || true)
    if [[ -n $base && $base != $(git rev-parse HEAD) ]]; then
        mapfile -t chosen < <(changed_sources "$base" | sample)
    else
        mapfile -t chosen < <(sources | sample)
    fi
fi
if ((${#chosen[@]} == 0)); then
    say "no source changed"
    exit 0
fi

[[ -f build/$preset/compile_commands.json ]] || configure "$preset"
mkdir -p "$log_folder"
say "looking at ${#chosen[@]} files"
# The compiler of the build knows warnings that clang does not.
if ! printf '%s\0' "${chosen[@]}" | xargs -0 -n 1 -P 2 clang-tidy --config-file=.clang-tidy -p "build/$preset" --quiet \
    --extra-arg=-Wno-unknown-warning-option 2>"$log_folder/tidy.log"; then
    grep -v 'warnings generated' "$log_folder/tidy.log" >&2 || true
    fail "clang-tidy found something"
fi

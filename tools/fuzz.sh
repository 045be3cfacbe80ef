#!/usr/bin/env bash
# fuzz.sh [--repeatable] [SECONDS]: feeds each fuzzer of tests/fuzz changed inputs for so long (60 at
# first), beginning with its seeds and with what earlier runs found. An input that breaks something
# is kept in build/fuzz/found and fails the run. A repeatable run begins with the seeds alone and
# tries the same inputs in the same order every time, so that a check fails for what was changed and
# not by chance.
name=fuzz
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

repeatable=false
if [[ ${1:-} == --repeatable ]]; then
    repeatable=true
    shift
fi
seconds=${1:-60}
[[ $seconds =~ ^[0-9]+$ ]] || fail "how many seconds? Usage: tools/fuzz.sh [--repeatable] [SECONDS]"
command -v clang++ >/dev/null || fail "clang++ is missing; tools/setup.sh installs it"

stems=()
for source in "$root"/tests/fuzz/*.cpp; do
    stems+=("$(basename "$source" .cpp)")
done
configure fuzz
build fuzz "${stems[@]/#/fuzz_}"
found=$root/build/fuzz/found
mkdir -p "$found"
for stem in "${stems[@]}"; do
    corpus=$root/build/fuzz/corpus/$stem
    # Seeds of a family of fuzzers, else those of rich text.
    seeds=$root/tests/fuzz/seeds_${stem%%_*}
    [[ -d $seeds ]] || seeds=$root/tests/fuzz/seeds
    order=()
    if $repeatable; then
        corpus=$root/build/fuzz/repeatable/$stem
        rm -rf "$corpus"
        order=(-seed=1 -entropic=0 -use_cmp=0) # what is compared holds names of this run
    fi
    mkdir -p "$corpus"
    # An input may take seconds; none may take more memory than this many megabytes.
    quietly "fuzz-$stem" "$stem for $seconds s" "$root/build/fuzz/bin/fuzz_$stem" \
        -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=8192 \
        -artifact_prefix="$found/" "${order[@]}" "$corpus" "$seeds"
done

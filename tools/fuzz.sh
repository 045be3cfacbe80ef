#!/usr/bin/env bash
# fuzz.sh [SECONDS]: feeds each fuzzer of tests/fuzz changed inputs for so long (60 at first),
# beginning with its seeds and with what earlier runs found. An input that breaks something is kept
# in build/fuzz/found and fails the run.
name=fuzz
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

seconds=${1:-60}
[[ $seconds =~ ^[0-9]+$ ]] || fail "how many seconds? Usage: tools/fuzz.sh [SECONDS]"
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
    mkdir -p "$corpus"
    # An input may take seconds; none may take more memory than this many megabytes.
    quietly "fuzz-$stem" "$stem for $seconds s" "$root/build/fuzz/bin/fuzz_$stem" \
        -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=8192 \
        -artifact_prefix="$found/" "$corpus" "$seeds"
done

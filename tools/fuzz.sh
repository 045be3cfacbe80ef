#!/usr/bin/env bash
# fuzz.sh [SECONDS]: feeds each fuzzer changed inputs for so long (60 at first), beginning with
# tests/fuzz/seeds and with what earlier runs found. An input that breaks something is kept in
# build/fuzz/found and fails the run.
name=fuzz
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

seconds=${1:-60}
[[ $seconds =~ ^[0-9]+$ ]] || fail "how many seconds? Usage: tools/fuzz.sh [SECONDS]"
command -v clang++ >/dev/null || fail "clang++ is missing; tools/setup.sh installs it"

fuzzers=(fuzz_rtf_reader fuzz_rtf_object)
configure fuzz
build fuzz "${fuzzers[@]}"
found=$root/build/fuzz/found
mkdir -p "$found"
for fuzzer in "${fuzzers[@]}"; do
    corpus=$root/build/fuzz/corpus/$fuzzer
    mkdir -p "$corpus"
    # An input may take a second; none may take more memory than this many megabytes.
    quietly "$fuzzer" "$fuzzer for $seconds s" "$root/build/fuzz/bin/$fuzzer" \
        -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=8192 \
        -artifact_prefix="$found/" "$corpus" "$root/tests/fuzz/seeds"
done

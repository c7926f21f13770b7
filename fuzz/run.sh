#!/usr/bin/env bash
# fuzz/run.sh SECONDS: builds the fuzzers and runs all of them, SECONDS in all; prints how often each ran what it was
# given. What crashes, hangs for 10 seconds or takes too much memory is kept in build/fuzz/found, and the exit status is 1.
# Status 77: clang with libFuzzer is not here.
#
# What is learned stays in build/fuzz/corpus, so that the next run goes on from there. With ZENVORA_JET_SAMPLES naming a
# folder of .mdb files these are among the seeds.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/common.sh

seconds=${1:-60}
if ! command -v clang++ >/dev/null ||
    ! echo 'extern "C" int LLVMFuzzerTestOneInput(const unsigned char*, unsigned long) { return 0; }' |
        clang++ -x c++ -fsanitize=fuzzer - -o /dev/null 2>/dev/null; then
    say "no clang with libFuzzer here: nothing was fuzzed"
    exit 77
fi

# Three quarters of the time for the targets over .mdb files: name, kind of seeds, share of the time in percent.
targets=("jet_open jet 20" "jet_verify jet 20" "jet_write jet 20" "jet_repair jet 20"
    "delimited delimited 3" "xml xml 3" "map map 3" "sql sql 3" "ini ini 3" "link link 2" "rich_text rich_text 3")
names=("${targets[@]%% *}")
build fuzz fuzz_seeds "${names[@]/#/fuzz_}"
programs=build/fuzz/fuzz
seeds=build/fuzz/seeds
found=build/fuzz/found
rm -rf "$seeds" "$found"
mkdir -p "$found"
"$programs/fuzz_seeds" "$seeds"
cp help/fields/*.rtf "$seeds/rich_text/"
if [ -d "${ZENVORA_JET_SAMPLES:-}" ]; then
    find "$ZENVORA_JET_SAMPLES" -name '*.mdb' -size -200k -exec cp {} "$seeds/jet/" \;
fi

# A fixed seed: whether a change passes must not hang on chance. ZENVORA_FUZZ_SEED=0 explores elsewhere each time.
seed=${ZENVORA_FUZZ_SEED:-1}

failed=0
executions=0
for target in "${targets[@]}"; do
    read -r name kind share <<<"$target"
    corpus=build/fuzz/corpus/$name
    mkdir -p "$corpus"
    folders=("$corpus" "$seeds/$kind")
    [ ! -d "fuzz/corpus/regressions/$kind" ] || folders+=("fuzz/corpus/regressions/$kind")
    log=build/fuzz/$name.log
    status=0
    "$programs/fuzz_$name" -max_total_time=$(((seconds * share + 99) / 100)) -seed="$seed" -timeout=10 -rss_limit_mb=2048 \
        -malloc_limit_mb=512 -max_len=200000 -print_final_stats=1 -artifact_prefix="$found/$name-" \
        "${folders[@]}" >"$log" 2>&1 || status=$?
    count=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    executions=$((executions + ${count:-0}))
    say "$name: ${count:-0} executions"
    if [ "$status" -ne 0 ] || [ "${count:-0}" -eq 0 ]; then
        failed=1
        complain "fuzzing $name found something (see $found):"
        grep -E -m 5 'ERROR|SUMMARY|runtime error|#[0-9]+ 0x.* in zenvora' "$log" >&2 || tail -n 5 "$log" >&2
    fi
done
say "$executions executions in all"
exit $failed

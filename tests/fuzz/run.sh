#!/bin/sh
# Runs every fuzz target that is built, two at a time, and fails on a finding.
# usage: tests/fuzz/run.sh SECONDS [BUILD-FOLDER]
set -eu
seconds=${1:?usage: tests/fuzz/run.sh SECONDS [BUILD-FOLDER]}
here=$(cd "$(dirname "$0")" && pwd)
build=$(cd "${2:-$here/../../build/fuzz}" && pwd)/tests/fuzz

run_one() {
    name=${1##*/fuzz_}
    # New inputs go into the build folder; the seeds in the sources stay as they are.
    mkdir -p "$build/found/$name"
    set -- "$1" "$build/found/$name"
    if [ -d "$here/corpus/$name" ]; then set -- "$@" "$here/corpus/$name"; fi
    if "$@" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=65536 -verbosity=0 -print_final_stats=1 \
        -artifact_prefix="$build/finding-$name-" >"$build/$name.log" 2>&1; then
        runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$build/$name.log")
        echo "clean: $name, $runs runs in $seconds s"
    else
        echo "FINDING: $name"
        tail -n 30 "$build/$name.log"
        return 1
    fi
}

if [ "${3:-}" ]; then
    run_one "$3"
    exit
fi
ls "$build"/fuzz_* >/dev/null 2>&1 || { echo "no fuzz targets in $build" >&2; exit 1; }
find "$build" -maxdepth 1 -name 'fuzz_*' -type f -perm -u+x | sort |
    xargs -P 2 -I {} "$here/run.sh" "$seconds" "${build%/tests/fuzz}" {}

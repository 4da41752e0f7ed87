#!/bin/bash
# Runs the sample, which run.sh has built, on the emulator: run_sample.sh <folder it was built in>. Needs a started device.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../../.." && pwd)
folder=$(cd "${1:?}" && pwd)

failures=0
fail() {
    echo "FAILED: $*" >&2
    failures=$((failures + 1))
}

# Runs the sample with its arguments; what it says goes to lines.txt, its exit code to $status.
runSample() {
    status=0
    VANTOR_HANDHELD_PROGRAM="$folder/a build/sample.exe" timeout 60 "$root/tools/device/in_device" \
        --handheld "$root/tests/devices/small.txt" 'C:\Program Files\Vantor\vantor.exe' "$@" > "$folder/said.txt" 2>&1 ||
        status=$?
    tr -d '\r' < "$folder/said.txt" > "$folder/lines.txt"
}

# Every processor, at two bases, called from ARM state and (where there is one) from Thumb state.
runs=0
for processor in sa1110 ti925t arm926 cortex-a8; do
    for base in 0x10000 0x2a540000; do
        for caller in arm thumb; do
            [ "$processor-$caller" = sa1110-thumb ] && continue
            VANTOR_HANDHELD_PROCESSOR=$processor VANTOR_HANDHELD_BASE=$base VANTOR_HANDHELD_CALLER=$caller \
                runSample one two
            [ "$status" = 23 ] || fail "on $processor at $base from $caller state the sample ended with $status"
            diff "$here/expected_lines.txt" "$folder/lines.txt" ||
                fail "on $processor at $base from $caller state the sample printed other lines"
            runs=$((runs + 1))
        done
    done
done
echo "the sample ran $runs times"

# At its end only the library's reserve for exceptions is left, beside the command line, which is the system's.
VANTOR_HANDHELD_FUNCTIONS=1 runSample one two
grep -q 'still taken, in 2 blocks' "$folder/lines.txt" || fail "the sample left $(grep 'still taken' "$folder/lines.txt")"

# What the emulator is there to notice, it notices.
expectFailure() {
    runSample $1
    [ "$status" = "$2" ] || fail "the sample told to \"$1\" ended with $status, not $2"
    grep -q "$3" "$folder/lines.txt" || fail "the sample told to \"$1\" did not lead to \"$3\""
}
expectFailure "read unaligned" 99 "a read of 4 bytes at .*: it is not aligned"
expectFailure "write constant" 99 "section .rdata of the program is write-protected"
expectFailure "write code" 99 "section .text of the program is write-protected"
expectFailure "run data" 99 "cannot run: section .data of the program is not code"
expectFailure "free twice" 99 "LocalFree: .* is no block of the heap: 0 bytes into a freed block"
expectFailure "destroy register" 99 "returned to .* with r9 changed to 00000000"
expectFailure "throw into system" 3 "The program ended itself: abort"
expectFailure "throw out" 3 "The program ended itself: abort"

if [ "$failures" -ne 0 ]; then
    echo "$failures failed" >&2
    exit 1
fi
echo "all passed"

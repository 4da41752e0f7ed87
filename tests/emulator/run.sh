#!/bin/bash
# Tests the emulator: run.sh FOLDER. Builds a program that makes mistakes and looks at what the emulator says of each.
# Needs a started device: tools/device/with_device.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
root=$(cd "$here/../.." && pwd -P)
mkdir -p "${1:?}"
folder=$(cd "$1" && pwd -P)
cmake -G Ninja -S "$here/mistakes" -B "$folder/mistakes" -DCMAKE_BUILD_TYPE=MinSizeRel \
    -DCMAKE_TOOLCHAIN_FILE="$root/cmake/handheld-toolchain.cmake" >"$folder/configure.log" ||
    { cat "$folder/configure.log"; exit 1; }
cmake --build "$folder/mistakes" >"$folder/build.log" || { cat "$folder/build.log"; exit 1; }
# A device whose system lacks one of the functions that the program calls.
grep -v 'MessageBeep' "$root/platform/ce/imports.txt" >"$folder/exports.txt"

failures=0
# Expect MISTAKE EXIT_CODE PATTERN...: the run ends so and says so. $device names its description, or is its path.
Expect() {
    local mistake=$1 code=$2 result=0 pattern description=${device:-small}
    shift 2
    [[ $description == /* ]] || description=$root/tests/devices/$description.txt
    VANTOR_HANDHELD_PROGRAM=$folder/mistakes/mistakes.exe VANTOR_HANDHELD_EXPORTS=$folder/exports.txt \
        timeout 60 "$root/tools/device/in_device" --handheld "$description" \
        'C:\Program Files\Vantor\vantor.exe' "$mistake" >"$folder/said.txt" 2>&1 || result=$?
    if [[ $result != "$code" ]]; then
        echo "FAILED: \"$mistake\" ended with $result, not $code" >&2
        cat "$folder/said.txt" >&2
        failures=$((failures + 1))
    fi
    for pattern in "$@"; do
        grep -q -- "$pattern" "$folder/said.txt" || {
            echo "FAILED: \"$mistake\" did not lead to \"$pattern\" but to:" >&2
            cat "$folder/said.txt" >&2
            failures=$((failures + 1))
        }
    done
}

Expect none 7
Expect read-unaligned 99 'a read of 4 bytes at .*: it is not aligned' 'ReadUnaligned'
Expect write-unaligned 99 'a write of 2 bytes at .*: it is not aligned' 'WriteUnaligned'
Expect write-code 99 'section .text of the program is write-protected' 'WriteCode'
Expect use-freed-block 99 '4 bytes into a freed block of 40 bytes taken by .*UseFreedBlock.* freed by .*UseFreedBlock'
Expect free-twice 99 'LocalFree: .* is no block of the heap: 0 bytes into a freed block' 'FreeTwice'
Expect read-behind-block 99 '13 bytes into a block of 13 bytes taken by .*ReadBehindBlock'
Expect pass-short-buffer 99 'GetClientRect: 16 bytes at .* may not be written' 'PassShortBuffer'
Expect pass-unended-text 99 'GetFileAttributesW: .* may not be read: 8 bytes into a block of 8 bytes' 'PassUnendedText'
Expect use-sixty-kilobytes 7
Expect use-seventy-kilobytes 99 'the stack of 64 KB is used up' 'Deeper'
Expect destroy-register 99 'returned to EnumWindows with r8 changed to 00000005'
Expect return-in-wrong-state 7
VANTOR_HANDHELD_PROCESSOR=arm926 VANTOR_HANDHELD_CALLER=thumb Expect return-in-wrong-state 99 'returned to EnumWindows in the wrong state'
VANTOR_HANDHELD_PROCESSOR=sa1110 VANTOR_HANDHELD_CALLER=thumb Expect none 99 'no Thumb state'
Expect make-window-of-nobody 99 'CreateWindowExW: 00000000 is not the program'
Expect run-heap 99 'cannot run: the heap is not code'
Expect call-what-the-device-lacks 99 'called MessageBeep, which the device does not export' 'CallWhatTheDeviceLacks'
Expect call-what-is-not-served 99 'called keybd_event, which this emulator does not serve' 'CallWhatIsNotServed'
Expect free-what-the-system-has 99 'LocalFree: the block .* belongs to the system'
Expect read-nothing 99 'a read of 4 bytes at 00000020: nothing is there' 'ReadNothing'
Expect leave-section-twice 99 'LeaveCriticalSection: the critical section at .* was not entered'
Expect call-an-address 99 'made the call at f000e3d0, which the device does not have'
device=large Expect list-partitions 7 'DSK1: holds Storage Card'
device=system_6 Expect list-partitions 7 'DSK1: holds Storage Card'
device=large Expect look-up-what-no-list-names 99 'looks for aygshell!SHFindMenuBars, which is no function'
device=large Expect look-up-stores 7 'it has no stores'
device=system_6 Expect look-up-stores 7 'it has stores'
device=large Expect leave-search-open 99 '1 searches and 0 snapshots were not closed'
# The program runs in the midst of a call: the call has the arguments of before, and finds the memory of after.
Expect take-messages 7 'got the next' 'looked at the next'
Expect free-message-while-waiting 99 'GetMessageW: 28 bytes at .* may not be written: 0 bytes into a freed block'
Expect free-text-while-asking 99 'GetWindowTextW: 64 bytes at .* may not be written: 0 bytes into a freed block'
Expect free-paint-while-erasing 99 'BeginPaint: 64 bytes at .* may not be written: 0 bytes into a freed block'
Expect free-answer-while-sending 99 'SendMessageTimeout: 4 bytes at .* may not be written: 0 bytes into a freed block'
Expect identify-files 7 'a file of 5 bytes with one link' '^the same as before' 'not the same as the other' \
    'with an identifier' 'a folder is refused'
Expect load-modules-that-lie 7 'a sound one is loaded' 'an empty one is refused' 'a huge one is refused' \
    'headers behind the file are refused'
sed 's/^store .*/& identity=no/' "$root/tests/devices/small.txt" >"$folder/nameless.txt"
device=$folder/nameless.txt Expect identify-files 7 'a file of 5 bytes with one link' '^the same as the other' \
    'without an identifier'

# Wherever it is loaded and whatever processor it has, the program is the same.
for processor in sa1110 ti925t arm926 cortex-a8; do
    VANTOR_HANDHELD_PROCESSOR=$processor VANTOR_HANDHELD_BASE=0x2a540000 Expect none 7
    VANTOR_HANDHELD_PROCESSOR=$processor VANTOR_HANDHELD_BASE=0x2a540000 Expect read-unaligned 99 'ReadUnaligned'
done

# Counts are the same in every run, wherever the program stands.
CountInstructions() {
    VANTOR_HANDHELD_FUNCTIONS=1 Expect use-sixty-kilobytes 7 'instructions in all'
    grep 'instructions in all' "$folder/said.txt"
}
first=$(CountInstructions)
second=$(VANTOR_HANDHELD_BASE=0x2a540000 CountInstructions)
[[ -n $first && $first == "$second" ]] || {
    echo "FAILED: one run took $first, another $second" >&2
    failures=$((failures + 1))
}

# What the emulator has to serve: everything that the executable imports.
VANTOR_HANDHELD_CHECK=1 timeout 60 "$root/tools/device/in_device" --handheld "$root/tests/devices/small.txt" \
    'C:\Program Files\Vantor\vantor.exe' || { echo "FAILED: system calls are missing" >&2; failures=$((failures + 1)); }

# A mistake in a description is found.
for line in 'screen width=240 height=320 dots=96' 'screen width=a height=320 dots=96 caption=0' 'card' 'printer paper=A4' \
    'system major=6' 'library names=no' 'library name=aygshell names=some' \
    'module name=a.dll base=1 size=1' 'stack kilobytes=64 colour=red' 'process name="a'; do
    echo "$line" >"$folder/device.txt"
    result=0
    timeout 60 "$root/tools/device/in_device" --handheld "$folder/device.txt" \
        'C:\Program Files\Vantor\vantor.exe' >"$folder/said.txt" 2>&1 || result=$?
    [[ $result == 99 ]] && grep -q 'device.txt:1: ' "$folder/said.txt" || {
        echo "FAILED: \"$line\" was taken for a description" >&2
        failures=$((failures + 1))
    }
done

VisibleWindows() {
    { xdotool search --onlyvisible --class . 2>/dev/null || true; } | wc -l
}

# The program itself on every described device: it shows as many processes as there are, itself among them.
for device in small large tall; do
    timeout 60 "$root/tools/device/in_device" --handheld "$root/tests/devices/$device.txt" \
        'C:\Program Files\Vantor\vantor.exe' >"$folder/said.txt" 2>&1 &
    program=$!
    described=$(grep -c '^process ' "$root/tests/devices/$device.txt")
    shown=
    for ((attempt = 0; attempt < 100; ++attempt)); do
        xdotool search --onlyvisible --name '^\\$' >/dev/null 2>&1 && xdotool key 3 || true
        shown=$(xdotool search --onlyvisible --name '^Processes' getwindowname 2>/dev/null || true)
        [[ -z $shown ]] || break
        sleep 0.1
    done
    [[ $shown == "Processes ($((described + 1)))" ]] || {
        echo "FAILED: on the device $device the caption is \"$shown\"" >&2
        cat "$folder/said.txt" >&2
        failures=$((failures + 1))
    }
    # The last command of the menu, which is a window of its own.
    windows=$(VisibleWindows)
    xdotool key F2
    for ((attempt = 0; attempt < 100; ++attempt)); do
        (($(VisibleWindows) == windows)) || break
        sleep 0.1
    done
    xdotool key Up Return
    wait $program || { echo "FAILED: on the device $device the program ended with $?" >&2; failures=$((failures + 1)); }
done

# Cards that the test device does not have otherwise.
rmdir "$VANTOR_DEVICE/drive_c/Storage Card2" "$VANTOR_DEVICE/drive_c/Persistent Store" 2>/dev/null || true
((failures == 0)) || exit 1
echo "all passed"

#!/bin/bash
# Tests the way from sources to a handheld executable: run.sh <folder to build in>. Ends non-zero if anything fails.
set -euo pipefail
if [ $# -ne 1 ]; then
    echo "usage: run.sh <build folder>" >&2
    exit 2
fi
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../../.." && pwd)
mkdir -p "$1"
folder=$(cd "$1" && pwd)
export PYTHONDONTWRITEBYTECODE=1

failures=0
fail() {
    echo "FAILED: $*" >&2
    failures=$((failures + 1))
}

# The sample is built from a copy: its path contains blanks, and its files can be touched.
copy="$folder/a copy"
build="$folder/a build"
rm -rf "$copy"
mkdir -p "$copy/platform/ce" "$copy/tools" "$copy/tests/tools/handheld"
cp -rp "$root/cmake" "$copy/"
cp -rp "$root/platform/ce/"{prefix.h,imports.txt,runtime,late_function.h,late_function.cpp} "$copy/platform/ce/"
cp -rp "$root/tools/handheld" "$copy/tools/"
cp -rp "$here/sample" "$copy/tests/tools/handheld/"
sample="$copy/tests/tools/handheld/sample"
launcher=()
if command -v ccache > /dev/null; then
    launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
[ -f "$build/build.ninja" ] || cmake -G Ninja -S "$sample" -B "$build" -DCMAKE_BUILD_TYPE=MinSizeRel "${launcher[@]}" \
    -DCMAKE_TOOLCHAIN_FILE="$copy/cmake/handheld-toolchain.cmake" > "$folder/configure.log" ||
    { cat "$folder/configure.log"; exit 1; }
buildSample() {
    cmake --build "$build" > "$folder/build.log" || { cat "$folder/build.log"; exit 1; }
}
buildSample

# A change of whatever goes into the executable makes it anew, and nothing else does.
for changed in platform/ce/imports.txt tools/handheld/elf_to_pe.py tools/handheld/resource_file.py \
    tools/handheld/executable.ld.in tests/tools/handheld/sample/sample.rc \
    tests/tools/handheld/sample/sample_resources.h tests/tools/handheld/sample/pictures/dot.bin; do
    ninja -C "$build" -n | grep -q "no work to do" || fail "there is work to do although nothing changed"
    touch "$copy/$changed"
    ninja -C "$build" -n | grep -q "Making sample.exe" || fail "a change of $changed does not make the executable anew"
    buildSample
done

/usr/bin/python3 "$root/tools/handheld/check_executable.py" "$build/sample.exe" --stack-usage "$build" \
    --expect-resources "$here/expected_resources.txt" || fail "check_executable.py"

/usr/bin/python3 -m unittest discover --start-directory "$here" --pattern 'test_*.py' || fail "the tests of the tools"

if [ "$failures" -ne 0 ]; then
    echo "$failures failed" >&2
    exit 1
fi
echo "all passed"

# What the scripts share; sourced, never run.
# shellcheck shell=bash
set -euo pipefail
exec </dev/null

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=${JOBS:-$(nproc)}

# Runs a command and shows what it printed only when it fails.
quietly() {
  local log status=0
  log=$(mktemp)
  "$@" >"$log" 2>&1 || status=$?
  [ "$status" -eq 0 ] || cat "$log" >&2
  rm -f "$log"
  return "$status"
}

# The build that scripts/test.sh tests and scripts/check_install.sh installs: build/test.
configure_test_build() {
  quietly cmake -S "$root" -B "$root/build/test" -G Ninja -DOVXMLLIB_BUILD_BENCH=OFF
}

# build_targets FOLDER [TARGET...]: shows its progress on a terminal only.
build_targets() {
  local folder=$1 quiet=(-- --quiet)
  shift
  [ ! -t 1 ] || quiet=()
  cmake --build "$folder" --parallel "$jobs" ${1:+--target "$@"} "${quiet[@]}"
}

# run_ctest FOLDER [OPTION...]: runs the tests of a build folder, shows those that do not pass, and leaves the result in
# FOLDER/ctest.xml for scripts/count_tests.py.
run_ctest() {
  local folder=$1
  shift
  rm -f "$folder/ctest.xml"
  (cd "$root" && ctest --parallel "$jobs" --output-on-failure --no-tests=error --output-junit "$folder/ctest.xml" "$@") |
    grep --text --invert-match --extended-regexp '^ +Start |   Passed  '
}

#!/usr/bin/env bash
# Builds the library with its tests, examples and fuzz targets in build/test and runs all tests. The last line says how
# many passed and how many failed.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

"$root/scripts/setup.sh"
configure_test_build
build_targets "$root/build/test"

status=0
run_ctest "$root/build/test" --test-dir "$root/build/test" || status=$?
python3 "$root/scripts/count_tests.py" "$root/build/test/ctest.xml"
exit "$status"

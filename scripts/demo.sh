#!/usr/bin/env bash
# Builds the library and the example mime_types in build/demo and runs the example.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

"$root/scripts/setup.sh"
folder=$root/build/demo
[ -e "$folder/build.ninja" ] || echo "Building the library and the example; the first time takes a minute or two."
# A compiler that nobody tried yet may warn; that must not keep a newcomer from the program.
quietly cmake -S "$root" -B "$folder" -G Ninja --compile-no-warning-as-error -DCMAKE_BUILD_TYPE=Release \
  -DOVXMLLIB_BUILD_TESTS=OFF -DOVXMLLIB_BUILD_BENCH=OFF -DOVXMLLIB_BUILD_FUZZERS=OFF
quietly build_targets "$folder" mime_types

mkdir -p "$folder/output"
cd "$folder/output"
exec "$folder/examples/mime_types"

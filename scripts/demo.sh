#!/usr/bin/env bash
# Builds the library, three examples and the program ovxml in build/demo. Orders are read from a file into objects, a fault
# in the file is shown with its place, and the mended orders are written as XML, JSON and Fast Infoset; ten thousand orders
# show sizes and times of the three formats; then ovxml converts the MIME database of the desktop.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

"$root/scripts/setup.sh"
folder=$root/build/demo
[ -e "$folder/build.ninja" ] || echo "Building the library, the example and ovxml; the first time takes a minute or two."
# A compiler that nobody tried yet may warn; that must not keep a newcomer from the program.
quietly cmake -S "$root" -B "$folder" -G Ninja --compile-no-warning-as-error -DCMAKE_BUILD_TYPE=Release \
  -DOVXMLLIB_BUILD_TESTS=OFF -DOVXMLLIB_BUILD_BENCH=OFF -DOVXMLLIB_BUILD_FUZZERS=OFF
quietly build_targets "$folder" orders formats mime_types ovxml

mkdir -p "$folder/output"
cd "$folder/output"
"$folder/examples/orders" "$root/examples/orders/orders.xml"
printf '\nThe same orders begin as JSON and as Fast Infoset:\n\n'
head -n 10 mended.json
head -c 96 mended.finf | od -A d -t x1z

printf '\nMany orders in the three formats, not indented but for the first line; milliseconds:\n\n'
"$folder/examples/formats"

printf '\nThe MIME database of the desktop, by a bound class:\n\n'
"$folder/examples/mime_types"

database=/usr/share/mime/packages/freedesktop.org.xml
[ -e "$database" ] || exit 0
ovxml() {
  echo "\$ ovxml $*"
  "$folder/tools/ovxml" "$@"
}
size_of() { echo "  $1: $(stat -c %s "$1") bytes"; }

printf '\nThe same database, by the command-line program build/demo/tools/ovxml:\n\n'
ovxml info "$database"
ovxml convert "$database" --indent 2 -o formatted.xml
size_of formatted.xml
sed -n '2,7s/\(.\{100\}\).*/\1.../; 2,7p' formatted.xml
ovxml convert "$database" -o small.xml.gz
size_of small.xml.gz
ovxml check formatted.xml small.xml.gz
echo "The files are in $PWD."

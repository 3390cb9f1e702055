#!/usr/bin/env bash
# Instructions that each binder takes for a byte of the 100 KB document, counted by valgrind: instructions.sh BUILD_FOLDER
# What starting takes drops out: ten passes are the difference between eleven and one.
set -euo pipefail

program=${1:?usage: instructions.sh BUILD_FOLDER}/bench/peers/peers_pass
wanted=100000
bytes=$("$program" Expat read "$wanted" 0)

# count PEER read|write PASSES
count() {
  valgrind --tool=callgrind --callgrind-out-file=/dev/null "$program" "$1" "$2" "$wanted" "$3" 2>&1 |
    sed -n 's/.*Collected : //p'
}

for way in read write; do
  for peer in Expat Object ByHand GsoapText GsoapNumber Xsd; do
    [ "$way $peer" != "write Expat" ] || continue
    one=$(count "$peer" "$way" 1)
    eleven=$(count "$peer" "$way" 11)
    printf '%-6s %-12s %6d.%d\n' "$way" "$peer" $(((eleven - one) / 10 / bytes)) $(((eleven - one) / bytes % 10))
  done
done

#!/usr/bin/env bash
# Installs the Debian packages that are missing, and says so; prints nothing when there is nothing to do.
#
#   setup.sh [--clang] [--bench] [--peers] [--interop] [--interop-bench]
#     always           what builds the library, ovxml, the tests and the examples
#     --clang          the sanitizer builds, the fuzz targets, clang-format and clang-tidy
#     --bench          the benchmarks
#     --peers          other data binders, for the benchmarks beside them (bench/peers)
#     --interop        the programs that tests compare ovxml with, and documents of many kinds
#     --interop-bench  the benchmark beside the Fast Infoset of Java
set -euo pipefail
exec </dev/null

packages=(cmake g++ libcli11-dev libexpat1-dev libgmock-dev libgtest-dev libpcre2-dev ninja-build pkgconf python3
          shared-mime-info zlib1g-dev)
for option in "$@"; do
  case "$option" in
    --clang) packages+=(clang clang-format clang-tidy libclang-rt-dev llvm) ;;
    --bench) packages+=(libbenchmark-dev libgmp-dev nlohmann-json3-dev rapidjson-dev) ;;
    --peers) packages+=(gsoap libgsoap-dev libxerces-c-dev valgrind xsdcxx) ;;
    --interop)  # the latter are documents; the Java packages bring more
      packages+=(default-jre-headless libfastinfoset-java libxml2-utils)
      packages+=(docbook-xsl docbook5-xml fontconfig-config iso-codes)
      ;;
    --interop-bench) packages+=(default-jdk-headless libbenchmark-dev libgmp-dev libfastinfoset-java) ;;
    *) echo "usage: setup.sh [--clang] [--bench] [--peers] [--interop] [--interop-bench]" >&2; exit 2 ;;
  esac
done

# The parser sees hostile input first, so an installed one that lacks known security fixes counts as missing. Raise this
# with Debian's security updates.
secure_expat='2.5.0-1+deb12u5'

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
  echo "setup: no Debian packages on this system; needed are the equivalents of: ${packages[*]}" >&2
  exit 0
fi

installed_version() { dpkg-query -W -f '${db:Status-Status} ${Version}\n' "$1" 2>/dev/null | sed -n 's/^installed //p'; }

# The development package asks for the very version of the library that it was built with, so its version tells both.
expat_is_old() {
  local version
  version=$(installed_version libexpat1-dev)
  [ -n "$version" ] && dpkg --compare-versions "$version" lt "$secure_expat"
}

wanted=()
for package in "${packages[@]}"; do
  [ -n "$(installed_version "$package")" ] || wanted+=("$package")
done
if expat_is_old; then wanted+=(libexpat1-dev); fi
[ ${#wanted[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "setup: run this as root: apt-get install ${wanted[*]}" >&2; exit 1; }
  as_root=(sudo)
fi

echo "setup: installing ${wanted[*]}"
apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0)
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { "${apt[@]}" update && "${apt[@]}" install -y --no-install-recommends "${wanted[@]}"; } >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi
if expat_is_old; then
  echo "setup: this system's package archive has no Expat as new as $secure_expat; going on with the old one" >&2
fi

#!/usr/bin/env bash
# usage: root.sh amd64|armhf FOLDER
#
# Installs the packages in FOLDER with dpkg into an empty root that holds nothing but the packages they depend on, builds
# an outside program against what is there, and runs it with the loader and the run time of that root. What they depend
# on is copied from this machine: its own packages, or for armhf those of the cross compiler.
set -euo pipefail
architecture=$1 folder=$(readlink -f "$2")
source=$(dirname "$(dirname "$(dirname "$(readlink -f "$0")")")")
consumer=$source/tests/install/consumer

fail() { echo "FAILED: $*" >&2; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
root=$work/root
quietly() { "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2; fail "$*"; }; }

case $architecture in
  amd64) triplet=x86_64-linux-gnu compiler=g++ toolchain=() ;;
  armhf)
    triplet=arm-linux-gnueabihf compiler=arm-linux-gnueabihf-g++
    # The cross compiler does not tell CMake which folder of /usr/lib is its target's: that of the package is named.
    toolchain=("-DCMAKE_TOOLCHAIN_FILE=$source/cmake/armhf.cmake" "-DQuorvel_DIR=$root/usr/lib/$triplet/cmake/Quorvel") ;;
  *) fail "unknown architecture $architecture" ;;
esac

library=$(echo "$folder"/libquorvel1_*_"$architecture".deb) development=$(echo "$folder"/libquorvel-dev_*_"$architecture".deb)
documents=$(echo "$folder"/libquorvel-doc_*_all.deb)

# --- What the packages say -----------------------------------------------------------------------------------------

depends=$(dpkg-deb -f "$library" Depends)
echo "libquorvel1 depends on $depends"
for needed in libc6 libstdc++6; do
  [[ ", $depends" == *", $needed (>= "* ]] || fail "libquorvel1 does not depend on a version of $needed"
done
[[ $depends != *cross* ]] || fail "libquorvel1 depends on a package of the cross compiler"
version=$(dpkg-deb -f "$library" Version)
[ "$(dpkg-deb -f "$development" Depends)" = "libquorvel1 (= $version)" ] || fail "libquorvel-dev does not need its library"
for package in "$library" "$development"; do
  [ "$(dpkg-deb -f "$package" Multi-Arch)" = same ] || fail "$package is not Multi-Arch: same"
done
control=$(dpkg-deb --ctrl-tarfile "$library" | tar -t)
for member in ./symbols ./shlibs ./triggers ./md5sums; do
  grep -qxF "$member" <<<"$control" || fail "libquorvel1 has no control file $member"
done
! grep -qE '^\./(pre|post)(inst|rm)$' <<<"$control" || fail "libquorvel1 has maintainer scripts, which this test does not run"
symbols=$(dpkg-deb --ctrl-tarfile "$library" | tar -xO ./symbols)
grep -q '^ QUORVEL_1@QUORVEL_1 1.0.0' <<<"$symbols" ||
  fail "the symbols file does not have the version node"

# --- An empty root with the run time -------------------------------------------------------------------------------

mkdir -p "$root"/var/lib/dpkg/{info,updates,triggers} "$root"/usr/{bin,sbin,lib64} "$root/usr/lib/$triplet"
for merged in bin sbin lib lib64; do ln -s "usr/$merged" "$root/$merged"; done
: >"$root/var/lib/dpkg/status"
if [ "$architecture" = amd64 ]; then
  pending=(libc6 libstdc++6 libgcc-s1)
  seen=" "
  while [ ${#pending[@]} -gt 0 ]; do
    package=${pending[0]} pending=("${pending[@]:1}")
    [[ $seen != *" $package "* ]] || continue
    seen+="$package "
    dpkg-query -s "$package:amd64" >>"$root/var/lib/dpkg/status"
    echo >>"$root/var/lib/dpkg/status"
    dpkg-query -L "$package:amd64" | while read -r file; do [ -d "$file" ] && [ ! -L "$file" ] || echo "${file#/}"; done |
      { grep -vE '^((usr/share|etc)/|[^/]+$)' || true; } | tar -c -C / -T - | tar -x -C "$root"
    mapfile -t -O ${#pending[@]} pending < <(dpkg-query -W -f '${Depends}\n' "$package:amd64" | tr ',' '\n' | awk 'NF {print $1}')
  done
  run() { "$root/lib64/ld-linux-x86-64.so.2" --inhibit-cache --library-path "$root/usr/lib/$triplet:$root/lib/$triplet" "$@"; }
else
  quietly dpkg --root="$root" --add-architecture armhf
  for package in libc6 libstdc++6 libgcc-s1; do
    printf 'Package: %s\nStatus: install ok installed\nArchitecture: armhf\nMulti-Arch: same\nVersion: %s\nMaintainer: -\nDescription: copied\n\n' \
      "$package" "$(dpkg-query -W -f '${Version}' "$package-armhf-cross")" >>"$root/var/lib/dpkg/status"
  done
  cp -a /usr/arm-linux-gnueabihf/lib/*.so* "$root/usr/lib/$triplet"
  ln -s "$triplet/ld-linux-armhf.so.3" "$root/usr/lib/ld-linux-armhf.so.3"
  run() { qemu-arm -L "$root" "$@"; }
fi

# --- Installed -------------------------------------------------------------------------------------------------------

packages=("$library" "$development")
if [ -e "$documents" ]; then # which asks for fonts and scripts that do not matter here
  packages+=("$documents")
  printf 'Package: libjs-mathjax\nStatus: install ok installed\nArchitecture: all\nVersion: 2\nMaintainer: -\nDescription: -\n\n' \
    >>"$root/var/lib/dpkg/status"
fi
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(fakeroot)
quietly "${as_root[@]}" dpkg --root="$root" --log=/dev/null --force-unsafe-io -i "${packages[@]}"
installed=$(dpkg-query --admindir="$root/var/lib/dpkg" -W -f '${Status} ${Package}\n' 'libquorvel*')
[ "$(grep -c '^install ok installed ' <<<"$installed")" -eq ${#packages[@]} ] || fail "not installed: $installed"
dpkg --root="$root" --verify libquorvel1 libquorvel-dev || fail "installed files differ from the packages'"
for file in "usr/lib/$triplet/libQuorvel.so.1.0.0" "usr/lib/$triplet/libQuorvel.so.1" "usr/lib/$triplet/libQuorvel.so" \
  "usr/lib/$triplet/cmake/Quorvel/QuorvelConfig.cmake" "usr/lib/$triplet/cmake/Quorvel/QuorvelConfigVersion.cmake" \
  "usr/lib/$triplet/pkgconfig/quorvel.pc" usr/include/quorvel/quorvel.h usr/include/quorvel/convenience.h \
  usr/share/doc/libquorvel1/copyright usr/share/doc/libquorvel1/changelog.Debian.gz \
  "usr/share/gdb/auto-load/usr/lib/$triplet/libQuorvel.so.1.0.0-gdb.py"; do
  [ -e "$root/$file" ] || fail "no /$file"
done
if [ -e "$documents" ]; then
  for file in html/index.html html/classSymmetricMatrix.html CODES.md.gz examples/readme.cpp; do
    [ -e "$root/usr/share/doc/libquorvel-dev/$file" ] || fail "no $file in libquorvel-doc"
  done
fi
for header in "$source"/include/quorvel/*.h; do
  cmp -s "$header" "$root/usr/include/quorvel/${header##*/}" || fail "${header##*/} is not installed, or another one"
done

# --- Used ------------------------------------------------------------------------------------------------------------

expect() {
  local program=$1 printed
  printed=$(run "$program") || fail "$program does not run"
  [ "$printed" = "sum 6, code 40000" ] || fail "$program printed '$printed'"
}

quietly cmake -G Ninja -S "$consumer" -B "$work/package" -DHOW=package -DCMAKE_CXX_COMPILER=$compiler \
  "${toolchain[@]}" -DCMAKE_PREFIX_PATH="$root/usr" -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=BOTH
grep -q "^Quorvel_DIR:[A-Z]*=$root/usr/lib/$triplet/cmake/Quorvel$" "$work/package/CMakeCache.txt" ||
  fail "find_package found another Quorvel than the installed one"
quietly cmake --build "$work/package"
expect "$work/package/consumer"
echo "find_package: builds and runs"

flags=$(PKG_CONFIG_LIBDIR=$root/usr/lib/$triplet/pkgconfig PKG_CONFIG_ALLOW_SYSTEM_LIBS=1 PKG_CONFIG_ALLOW_SYSTEM_CFLAGS=1 \
  pkg-config --cflags --libs quorvel)
# shellcheck disable=SC2086  # the flags are words
quietly $compiler -std=c++17 "$consumer/main.cpp" -o "$work/by_pkg_config" $flags
expect "$work/by_pkg_config"
echo "pkg-config: builds and runs"

# In gdb the printers come with the library. The root stands at another place than /, and gdb's folder with it.
if [ "$architecture" = amd64 ]; then
  mkdir -p "$work/auto-load$(dirname "$root")"
  ln -s "$root/usr/share/gdb/auto-load" "$work/auto-load$root"
  said=$(LD_LIBRARY_PATH=$root/usr/lib/$triplet gdb -nx -batch -iex "set auto-load scripts-directory $work/auto-load" \
    -iex "set debuginfod enabled off" -iex "add-auto-load-safe-path /" -ex "break main" -ex run -ex "quorvel code 40340" \
    "$work/package/consumer" 2>&1) || fail "gdb: $said"
  grep -q '^40340: ' <<<"$said" || fail "gdb has not loaded the printers: $said"
  echo "gdb: the printers are loaded"
fi

#!/usr/bin/env bash
# usage: package.sh [--no-install] [amd64] [armhf]
#
# Builds the Debian packages libquorvel1, libquorvel-dev and libquorvel-doc into build/packages: those of this machine's
# architecture, and those of another one by cross compiler (the documentation comes with this machine's). lintian
# looks at them, then they are unpacked into an empty root with the packages that they depend on, and an outside
# program is built and run there. What is packaged is the tree as it stands, committed or not.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/common.sh"

no_install=()
architectures=()
for argument in "$@"; do
  case $argument in
    --no-install) no_install=(--no-install) ;;
    amd64 | armhf) architectures+=("$argument") ;;
    *) echo "usage: package.sh [--no-install] [amd64] [armhf]" >&2; exit 2 ;;
  esac
done
[ ${#architectures[@]} -gt 0 ] || architectures=(amd64 armhf)
scripts/setup.sh "${no_install[@]}" build test package manual
[[ " ${architectures[*]} " != *" armhf "* ]] || scripts/setup.sh "${no_install[@]}" arm

machine=$(dpkg --print-architecture)
version=$(sed -n 's/^  VERSION \([0-9.]*\)$/\1/p' CMakeLists.txt)
packaged=$(dpkg-parsechangelog -S Version)
[ "${packaged%-*}" = "$version" ] ||
  { echo "FAILED: debian/changelog has version $packaged, CMakeLists.txt $version" >&2; exit 1; }

packages=$PWD/build/packages
for architecture in "${architectures[@]}"; do
  say "$architecture: building the packages"
  tree=$packages/work-$architecture/quorvel-$version
  rm -rf "$packages/work-$architecture" "${packages:?}/$architecture"
  mkdir -p "$tree" "$packages/$architecture"
  git ls-files -z --cached --others --exclude-standard | tar -c --null --ignore-failed-read -T - | tar -x -C "$tree"
  what=-b
  [ "$architecture" = "$machine" ] || what=-B
  # The build dependencies are what setup.sh installs; dpkg does not know a cross compiler as one of them.
  (cd "$tree" && quietly env DEB_BUILD_OPTIONS="parallel=$(nproc) nocheck" \
    dpkg-buildpackage --host-arch "$architecture" $what -us -uc -d)
  mv "$packages/work-$architecture"/*.{deb,changes,buildinfo} "$packages/$architecture"
  rm -rf "$packages/work-$architecture"
  ls -l "$packages/$architecture"/*.deb | awk '{print $5, $9}'

  say "$architecture: lintian"
  lintian --fail-on error --allow-root "$packages/$architecture"/*.changes

  say "$architecture: in an empty root"
  tests/package/root.sh "$architecture" "$packages/$architecture"
done

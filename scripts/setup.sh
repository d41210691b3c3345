#!/usr/bin/env bash
# Installs from the distribution what is missing for the named jobs: build, linux, package, lint, fuzz, windows,
# clang-windows, bench (default: all that the tests need). Asks the package manager only when something is missing.
set -euo pipefail

packages=()
for job in "${@:-all}"; do
  case $job in
    build | all) packages+=(g++ cmake ninja-build ccache googletest libc6-dev binutils-mingw-w64-x86-64) ;;&
    linux | all) packages+=(gdb) ;;&
    package | all) packages+=(dpkg-dev file pkg-config) ;;&
    lint | all) packages+=(clang clang-format clang-tidy doxygen) ;;&
    fuzz | all) packages+=(clang libclang-rt-14-dev) ;;&
    windows | all) packages+=(g++-mingw-w64-x86-64-posix wine64 wine) ;;&
    clang-windows) packages+=(clang g++-mingw-w64-x86-64-posix) ;;&
    bench) packages+=(python3 libbenchmark-dev qt6-base-dev libicu-dev libwxgtk3.2-dev libfmt-dev libboost-dev libunwind-dev pkg-config) ;;&
    build | linux | package | lint | fuzz | windows | clang-windows | bench | all) ;;
    *) echo "setup.sh: unknown job '$job'" >&2; exit 2 ;;
  esac
done

missing=()
for package in "${packages[@]}"; do
  state=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$state" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

root=()
[ "$(id -u)" = 0 ] || root=(sudo)
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${root[@]}" apt-get update -qq
"${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null

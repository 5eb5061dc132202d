#!/usr/bin/env bash
# Installs what is missing (Debian 12), builds everything with the address and undefined-behaviour sanitizers and the
# fuzz targets with clang, and runs all tests: unit, windows (offscreen and on a virtual display), jotctl, and a short fixed
# count of each fuzz target. The last lines are ctest's; the exit code is its own. Arguments go to ctest (-R name, ...).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
. cmake/debian.sh

prepare_environment
install_missing "${kBuildPackages[@]}" "${kDesktopPackages[@]}" "${kScreenPackages[@]}" "${kTestPackages[@]}"
build_preset asan
build_preset fuzz

# One run over both trees, so that one closing summary tells of all tests.
mkdir -p build/all
cat >build/all/CTestTestfile.cmake <<END
subdirs("$PWD/build/asan" "$PWD/build/fuzz")
END
exec ctest --test-dir build/all -j2 --output-on-failure --no-tests=error "$@"

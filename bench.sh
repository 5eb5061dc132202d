#!/usr/bin/env bash
# Installs what is missing (Debian 12), builds the benchmarks and prints how long Jotlet takes for everyday work on 10,000
# notes in proportion to SQLite, medians of one run. Arguments go to the benchmark program (--benchmark_filter=add, ...).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
. cmake/debian.sh

prepare_environment
install_missing cmake ninja-build g++ pkg-config libcli11-dev nlohmann-json3-dev libutf8proc-dev "${kBenchPackages[@]}"
build_preset bench notes_bench
exec build/bench/bin/notes_bench "$@"

#!/usr/bin/env bash
# Formats every C++ file with the repository's .clang-format;
# with --check, lists the files that are not formatted and fails.
set -euo pipefail
cd "$(dirname "$0")/.."
files=$(git ls-files '*.h' '*.cpp')
if [ "${1:-}" = "--check" ]; then
  clang-format --dry-run --Werror $files
else
  clang-format -i $files
fi

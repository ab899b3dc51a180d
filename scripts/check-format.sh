#!/usr/bin/env bash
# Checks that every C++ file of the project is as clang-format (the repository's .clang-format)
# would write it. Lists the files that differ and fails if there are any; changes nothing.
# `clang-format -i FILE...` puts a listed file right.
set -euo pipefail
cd "$(dirname "$0")/.."

format=""
for candidate in clang-format clang-format-14; do
    if command -v "$candidate" >/dev/null; then
        format="$candidate"
        break
    fi
done
if [ -z "$format" ]; then
    echo "check-format: clang-format is not installed" >&2
    exit 1
fi

# The files git knows, so that scratch files never count; a copy without git is taken as it is.
folders=(src tests bench fuzz)
if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
    mapfile -t files < <(git ls-files -- "${folders[@]}" | grep -E '\.(c|cc|cpp|h|hpp)$')
else
    mapfile -t files < <(find "${folders[@]}" -type f -regex '.*\.\(c\|cc\|cpp\|h\|hpp\)' | sort)
fi
different=()
for file in "${files[@]}"; do
    if ! "$format" --style=file "$file" | cmp -s - "$file"; then
        different+=("$file")
    fi
done

if [ "${#different[@]}" -ne 0 ]; then
    printf '%s\n' "${different[@]}"
    echo "check-format: ${#different[@]} of ${#files[@]} files differ from clang-format"
    exit 1
fi
echo "check-format: ${#files[@]} files as clang-format writes them"

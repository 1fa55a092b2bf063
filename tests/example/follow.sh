#!/bin/bash
# Follows docs/adding-a-table.md to the letter in a copy of the tree, and runs every check there. That builds everything
# once more, so it is no test of the build: `./dev nightly` runs it.
#   follow.sh [CTEST ARGUMENT...]    what is given goes to ./dev test, to run some tests only
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT

cd "$here/../.."
git ls-files -z --cached --others --exclude-standard | while IFS= read -r -d '' file; do
    if [[ -f $file ]]; then printf '%s\0' "$file"; fi
done | xargs -0 cp --parents --target-directory="$copy"
cd "$copy"
git init --quiet
git add --all
git -c user.name=example -c user.email=example commit --quiet --message="the tree before"

tests/example/apply.sh .
./dev facts
./dev abi --update
./dev test "$@"
./dev abi
./dev lint

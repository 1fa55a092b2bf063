#!/bin/bash
# Which directory may include which: cli -> kernel -> include; l2, l3 -> frame -> platform/include <- engine, host;
# engine -> store interface <- stores. Prints every #include line that goes another way, exits 1 if any.
#   arrows.sh [TREE]
set -euo pipefail
export LC_ALL=C
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
tree=$(cd "${1:-$here/../..}" && pwd)
# shellcheck source=tests/lint/files.sh
source "$here/files.sh"

# What a file may include of this tree, as a pattern of paths.
allowedFor() {
    case $1 in
    include/*) echo '^include/' ;;
    frame/*) echo '^(frame|include|platform/include)/' ;;
    l2/* | l3/*) echo '^(l2|l3|frame|include|platform/include)/' ;;
    platform/include/*) echo '^platform/include/' ;;
    platform/schema/*) echo '^platform/(schema|include)/' ;;
    platform/store/*) echo '^platform/(store|schema|include)/' ;;
    platform/host/*) echo '^platform/(host|schema|include)/' ;;
    platform/*) echo '^platform/' ;;
    kernel/*) echo '^(kernel|include|platform/include)/' ;;
    cli/*) echo '^(cli|kernel|include|platform/include)/' ;;
    examples/*) echo '^(include|platform/include)/' ;;
    bench/*) echo '^(bench|include|platform)/' ;;
    *) echo '^' ;;
    esac
}

# The file of this tree that FILE means by NAME, with .in if a build makes it from that; nothing for a header from
# elsewhere.
resolve() {
    local file=$1 name=$2 base
    for base in "${file%/*}/" "" include/ platform/include/; do
        if [[ -f $tree/$base$name || -f $tree/$base$name.in ]]; then
            printf '%s' "$base$name"
            return
        fi
    done
}

failures=0
complain() {
    printf '%s:%s: %s\n' "$1" "$2" "$3"
    failures=$((failures + 1))
}

standardC='^(assert|ctype|errno|inttypes|limits|stdarg|stdbool|stddef|stdint|stdio|stdlib|string|time)\.h$'

while IFS= read -r file; do
    allowed=$(allowedFor "$file")
    while IFS=: read -r line included; do
        [[ -n $line ]] || continue
        if [[ $included == *..* ]]; then
            complain "$file" "$line" "\"$included\": headers are named from the root of the tree, not by .."
            continue
        fi
        target=$(resolve "$file" "$included")
        if [[ -n $target ]]; then
            [[ $target =~ $allowed ]] || complain "$file" "$line" "$target may not be included from here"
        elif [[ $file == include/* && ! $included =~ $standardC ]]; then
            complain "$file" "$line" "$included: an exported header includes the standard headers of C only"
        fi
    done < <(sed -nE '/^[[:space:]]*#[[:space:]]*include[[:space:]]*[<"]/{=;s/^[^<"]*[<"]([^>"]*).*/\1/p}' \
        "$tree/$file" | paste -d: - -)
done < <(treeFiles "$tree" | grep -E '\.(h|c|cpp)$')

((failures == 0))

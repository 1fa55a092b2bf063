# shellcheck shell=bash
# Sourced by the lints: treeFiles TREE lists the files of a tree, one a line and relative to it, build output left out.
treeFiles() {
    if git -C "$1" rev-parse --show-toplevel >/dev/null 2>&1; then
        (cd "$1" && git ls-files --cached --others --exclude-standard | sort -u)
    else
        (cd "$1" && find . -name .git -prune -o -path ./build -prune -o -type f -printf '%P\n' | sort)
    fi | while IFS= read -r path; do
        if [[ -f $1/$path ]]; then printf '%s\n' "$path"; fi
    done
}

#!/bin/bash
# The subjects of commits are "part: what changes": a part in lower case (a table, a room of the tree or a tool; several
# are separated by commas), then what changes, in at most 80 characters. Checks the commits after BASE; without BASE,
# those that are not on origin/main yet. Prints every other subject, exits 1 if any.
#   subjects.sh [BASE]
set -euo pipefail

if (($# > 0)); then
    base=$1
else
    # A tree without history or without origin/main has nothing to compare with.
    base=$(git merge-base HEAD origin/main 2>/dev/null) || exit 0
fi

found=0
while read -r commit subject; do
    complaint=
    if ((${#subject} > 80)); then
        complaint="${#subject} characters, at most 80 are allowed"
    elif [[ ! $subject =~ ^[a-z0-9][a-z0-9_./-]*(,\ [a-z0-9][a-z0-9_./-]*)*:\ [^[:space:]] ]]; then
        complaint="not \"part: what changes\" with a part in lower case"
    fi
    [[ -n $complaint ]] || continue
    printf '%s: %s: %s\n' "$commit" "$complaint" "$subject"
    found=1
done < <(git log --no-merges --format='%h %s' "$base..HEAD")
exit $found

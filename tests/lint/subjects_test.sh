#!/bin/bash
# subjects.sh accepts the subjects that the house rule allows, and names every other one.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

fail() {
    printf 'FAILED %s\n' "$1"
    failures=$((failures + 1))
}

# A repository of its own, whatever the settings of whoever runs this.
touch "$work/config"
export GIT_CONFIG_GLOBAL=$work/config GIT_CONFIG_SYSTEM=$work/config
unset GIT_DIR GIT_WORK_TREE GIT_INDEX_FILE
export GIT_AUTHOR_NAME=a GIT_AUTHOR_EMAIL=a@example.net GIT_COMMITTER_NAME=a GIT_COMMITTER_EMAIL=a@example.net
git init -q "$work/repository"
cd "$work/repository"
git commit -q --allow-empty -m 'Anything before the base'
git tag base

# check WANTED SUBJECT: WANTED is accepted or refused.
check() {
    local answer said=accepted
    git reset -q --hard base
    git commit -q --allow-empty -m "$2"
    answer=$("$here/subjects.sh" base) || said=refused
    [[ $said == "$1" ]] || fail "'$2' is $said"
    [[ $said == accepted || $answer == *"${2% }"* ]] || fail "the answer does not show '$2': $answer"
}

check accepted 'l2mc6_vlan_port: refuse 13044 on write'
check accepted 'cli, kernel: name the option that is missing'
check accepted 'tests/lint: refuse long lines'
check refused 'Say it in words'
check refused 'Cli: name the option that is missing'
check refused 'cli name the option that is missing'
check refused 'cli: '
check refused 'cli,kernel: name the option'
check refused "cli: $(printf 'x%.0s' {1..76})"
check accepted "cli: $(printf 'x%.0s' {1..75})"

git reset -q --hard base
git commit -q --allow-empty -m 'One that is wrong'
git commit -q --allow-empty -m 'cli: one that is right'
if "$here/subjects.sh" base >/dev/null; then fail "a wrong subject before a right one is accepted"; fi
"$here/subjects.sh" HEAD~1 >/dev/null || fail "a subject before the base is refused"
"$here/subjects.sh" >/dev/null || fail "a repository without origin/main is refused"

((failures == 0)) || exit 1
echo "the subjects: every case as wanted"

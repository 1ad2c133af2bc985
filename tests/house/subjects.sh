#!/bin/bash
# tools/lint looks at the subjects of new commits only, as far as there is a history to tell them by.
#
#   subjects.sh PROJECT WORK
set -euo pipefail

project=$1 work=$2
command -v git >/dev/null || exit 77
rm -rf "$work"
mkdir -p "$work/upstream/tools"
cd "$work"
cp "$project/tools/lint" upstream/tools
export GIT_CONFIG_GLOBAL=/dev/null GIT_CONFIG_SYSTEM=/dev/null GIT_CEILING_DIRECTORIES=$work
for name in AUTHOR COMMITTER; do
    export GIT_${name}_NAME=somebody GIT_${name}_EMAIL=somebody@localhost
done
longest=$(printf 'x%.0s' {1..72})

# commit CHECKOUT SUBJECT
commit()
{
    git -C "$1" add . && git -C "$1" commit --quiet --allow-empty --message="$2"
}

# lint CHECKOUT STATUS PATTERN OPTION...: of the first line that it says
lint()
{
    local checkout=$1 expected=$2 said=$3 status=0
    shift 3
    "$checkout/tools/lint" "$@" subjects >out 2>&1 || status=$?
    [[ $status -eq $expected && $(head -n 1 out) =~ ^$said$ ]] || {
        printf '%s %s: ended with the status %s, not %s, and says\n' "$checkout" "$*" $status "$expected"
        cat out
        exit 1
    }
}

git -C upstream init --quiet --initial-branch=main
lint upstream 0 'there is no history here.*'
commit upstream "${longest}x from long ago"
commit upstream "$longest"
lint upstream 0 ''
lint upstream 1 'tools/lint: there is no revision missing' --base missing

echo '== a clone'
git clone --quiet "file://$work/upstream" clone
lint clone 0 ''
lint clone 0 '' --base HEAD
commit clone "${longest}x"
commit clone "$longest"
lint clone 1 ".* ${longest}x"
lint clone 0 '' --base HEAD~
git -C clone tag latest
git -C clone update-ref -d refs/remotes/origin/main
git -C clone checkout --quiet -b topic
git -C clone branch --quiet -D main
lint clone 0 ''
commit clone "${longest}y"
lint clone 1 ".* ${longest}y"

echo '== a shallow clone, of the main line and of a branch beside it'
git -C upstream checkout --quiet -b beside HEAD~
commit upstream 'Another'
for branch in main beside; do
    git clone --quiet --depth=2 --branch=$branch "file://$work/upstream" "shallow $branch"
    lint "shallow $branch" 0 ''
    git -C "shallow $branch" fetch --quiet --depth=1 origin main:refs/remotes/origin/main
    lint "shallow $branch" 0 ''
done

echo '== no history'
rm -rf clone/.git
lint clone 0 'there is no history here.*'
lint clone 1 'tools/lint: without history.*' --base main
git init --quiet .
git commit --quiet --allow-empty --message="${longest}z"
lint clone 0 'there is no history here.*'

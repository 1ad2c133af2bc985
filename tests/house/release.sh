#!/bin/bash
# ./check --all leaves the commit that passed it in build/checked, and tools/release stops at the first thing that a release lacks.
#
#   release.sh PROJECT WORK
#
# Both run in a small project, whose tools do as the folder build/ says: what is in build/fails fails, build/NAME.says is what a tool says, and
# build/NAME.does what it does.
set -euo pipefail

project=$1 work=$2
command -v git >/dev/null || exit 77
rm -rf "$work"
mkdir -p "$work/bin" "$work/upstream"/{docs,packaging,src,tools}
cd "$work/upstream"
export GIT_CONFIG_GLOBAL=/dev/null GIT_CONFIG_SYSTEM=/dev/null GIT_CEILING_DIRECTORIES=$work PATH=$work/bin:$PATH
for name in AUTHOR COMMITTER; do
    export GIT_${name}_NAME=somebody GIT_${name}_EMAIL=somebody@localhost
done

fail()
{
    cat -- "$work/out" 2>/dev/null || true
    printf '%s\n' "$*"
    exit 1
}

cp "$project/check" .
cp "$project/tools/release" tools
asked=(abi policy-tables script-tables excerpts pictures window-pictures)
cat >tools/abi <<'END_OF_TOOL'
#!/bin/bash
name=$(basename -- "$0")
if [[ -e build/$name.does ]]; then bash "build/$name.does"; fi
if [[ -e build/$name.says ]]; then cat "build/$name.says"; fi
[[ ! -e build/fails/$name ]]
END_OF_TOOL
chmod +x tools/abi
for tool in "${asked[@]:1}" install-packages armhf-sysroot lint coverage with-flash ../packaging/test; do cp tools/abi "tools/$tool"; done
# What the tools stand for is there.
for tool in "${asked[@]:1}"; do
    grep --quiet -e --check "$project/tools/$tool" || fail "tools/$tool has no --check"
done
cat >tools/configure <<'END_OF_TOOL'
#!/bin/bash
mkdir -p "build/$1"
END_OF_TOOL
cat >tools/run-tests <<'END_OF_TOOL'
#!/bin/bash
[[ $1 != --quick ]] || shift
result=Passed
[[ ! -e build/fails/run-tests ]] || result='***Failed'
printf '1/1 Test #1: tst_it ..... %s  0.01 sec\n' " $result" >"$1/check.log"
[[ $result == Passed ]]
END_OF_TOOL
printf '#!/bin/bash\n' >"$work/bin/ninja"
printf '#!/bin/bash\n%s\n' "echo '      \"name\" : \"tst_it\",'" >"$work/bin/ctest"
chmod +x tools/* "$work/bin/"*
echo /build/ >.gitignore
printf 'project(QzAudio\n    VERSION 1.2.0\n)\n' >CMakeLists.txt
printf '# Changelog\n\n## 1.2.0 - 2026-01-02\n\n## 1.1.0 - 2026-01-01\n' >CHANGELOG.md
printf 'qzaudio (1.2.0) unstable; urgency=medium\n' >packaging/changelog
echo '<release version="1.2.0" date="2026-01-02"/>' >packaging/qzaudio-desk.metainfo.xml
echo '.TH QZAUDIO\-DESK 1 "" "qzaudio 1.2.0"' >packaging/qzaudio-desk.1
echo 1 >src/library.cpp

commit()
{
    git add . && git commit --quiet --allow-empty --message="$1"
}

# figures COMMIT: as tools/proof writes them
figures()
{
    printf '%s\n' '<!-- written by tools/proof -->' '| Instrument | Found | Took | On |' '|---|---|---|---|' "| Walk | 7 of 7 | 1 s | 2026-01-01, $1 |" \
        '<!-- end -->' >docs/testing.md
}

git init --quiet --initial-branch=main
commit 'The library'
measured=$(git rev-parse --short HEAD)
figures "$measured"
echo 'Times' >docs/performance.md
commit 'What was measured'
git clone --quiet . ../clone
cd ../clone
mkdir -p build/fails
echo 'the binary interface is that of the baseline' >build/abi.says

# checked EXPECTED STATUS ARGUMENT...: what build/checked says after ./check
checked()
{
    local expected=$1 status=$2 ended=0
    shift 2
    ./check "$@" >"$work/out" 2>&1 || ended=$?
    [[ $ended -eq $status ]] || fail "./check $* ends with $ended"
    [[ $(cat build/checked 2>/dev/null) == "$expected" ]] || fail "./check $*: build/checked is \"$(cat build/checked)\", not \"$expected\""
}

echo '== ./check --all'
commit=$(git rev-parse HEAD)
touch build/fails/lint
checked '' 1 --all
rm build/fails/lint
for options in '' '--all --no-lint' '--all --no-arm' '--all --no-packages' '--all --quick' '--all release'; do
    # shellcheck disable=SC2086 # several
    checked '' 0 $options
done
touch stray
checked '' 0 --all
rm stray
echo 'touch stray' >build/lint.does
checked '' 0 --all
rm stray build/lint.does
checked "$commit" 0 --all
checked "$commit" 0 --no-lint
touch build/fails/run-tests
checked '' 1 --all
rm build/fails/run-tests
checked "$commit" 0 --all

# lacks PATTERN: what tools/release says at last, having failed
lacks()
{
    local status=0
    tools/release >"$work/out" 2>&1 || status=$?
    [[ $status -eq 1 && $(tail -n 1 "$work/out") =~ " ... missing: "$1$ ]] || fail "tools/release ends with $status, and not with \"missing: $1\""
}

# lacks_committed PATTERN: the same with what is changed here committed, which then goes
lacks_committed()
{
    commit 'A change'
    lacks "$1"
    git reset --quiet --hard origin/main
}

echo '== tools/release'
tools/release >"$work/out" 2>&1 || fail 'tools/release misses something'
grep --quiet "git tag .* \"*v1\.2\.0" "$work/out" || fail 'tools/release does not say how the release is made'
[[ $(tools/release --list | wc -l) -eq $(grep --count ' \.\.\. yes$' "$work/out") ]] || fail 'tools/release does not look at all that it lists'

touch stray
lacks 'what "git status" lists is not committed.*'
rm stray
git checkout --quiet -b beside
lacks 'this is not the branch main.*'
git checkout --quiet main
git tag --annotate --message=released v1.2.0
lacks 'v1\.2\.0 is released already.*'
git tag --delete v1.2.0 >/dev/null
echo 'project(QzAudio VERSION 1.2.0)' >CMakeLists.txt
lacks_committed 'CMakeLists\.txt has no line with VERSION.*'
sed -i 's/^## 1\.2\.0 - .*/## Unreleased/' CHANGELOG.md
lacks_committed 'the first heading of CHANGELOG\.md is "## Unreleased".*'
for heading in '1.2.0' '1.2.0 - 2026-01-01'; do
    sed -i "s/^## 1\.1\.0 - .*/## $heading/" CHANGELOG.md
    lacks_committed 'CHANGELOG\.md tells of 1\.2\.0 as an earlier release.*'
done
echo 'qzaudio (1.1.0) unstable; urgency=medium' >packaging/changelog
lacks_committed 'packaging/changelog begins with "1\.1\.0".*'
echo '<release version="1.1.0" date="2026-01-01"/>' >packaging/qzaudio-desk.metainfo.xml
lacks_committed 'packaging/qzaudio-desk\.metainfo\.xml has no release 1\.2\.0.*'
sed -i 's/1\.2\.0/1.1.0/' packaging/qzaudio-desk.1
lacks_committed '1\.1\.0 has to become 1\.2\.0 in packaging/qzaudio-desk\.1'
figures "$measured+"
lacks_committed 'docs/testing\.md has a figure of a state that was never committed.*'
figures 0123abc
lacks_committed 'docs/testing\.md has a figure of another library.*'
echo '# Testing' >docs/testing.md
lacks_committed 'docs/testing\.md has no figures.*'
echo 2 >src/library.cpp
lacks_committed 'docs/testing\.md has a figure of another library.*'
echo '# src/' >src/README.md # measures nothing, but is a commit
lacks_committed '\./check --all has not passed for this commit.*'
echo 2 >src/library.cpp
commit 'A change of the library'
figures "$(git rev-parse --short HEAD)"
lacks_committed 'docs/performance\.md is of another library.*'
touch build/fails/abi
lacks 'clients would break.*'
rm build/fails/abi
echo 'additions only' >build/abi.says
lacks 'the interface has grown.*'
echo 'the binary interface is that of the baseline' >build/abi.says
for tool in "${asked[@]:1}"; do
    touch "build/fails/$tool"
    lacks "tools/$tool --check fails.*"
    rm "build/fails/$tool"
done
rm build/checked
lacks '\./check --all has not passed for this commit.*'

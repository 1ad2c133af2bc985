#!/bin/bash
# tools/run-tests --quick leaves out a slow test exactly while it passed with the same inputs.
#
#   runtests.sh PROJECT WORK COMPILER
set -euo pipefail

run_tests=$1/tools/run-tests work=$2 compiler=$3
rm -rf "$work"
mkdir -p "$work/lib" "$work/read by it/deeper"
cd "$work"

# Tests that count how often they ran: a script and what it reads, and a program with a library of the build.
cat >script.sh <<'END'
#!/bin/sh
echo >>"$1/script.ran"
case $(cat "$1/read by it/deeper/input") in
fail) exit 1 ;;
hang) touch "$1/hangs" && sleep 60 ;;
skip) exit 77 ;;
esac
END
chmod +x script.sh
echo pass >'read by it/deeper/input'
compile_library()
{
    echo "int value() { return $1; }" | "$compiler" -x c++ -shared -fPIC -Wl,-soname,libvalue.so -o lib/libvalue.so -
}
compile_library 0
printf '%s\n' '#include <fstream>' 'int value();' \
    'int main() { std::ofstream("program.ran", std::ios::app) << "\n"; return value() < 0; }' >program.cpp
"$compiler" -o program program.cpp lib/libvalue.so -Wl,-rpath,"$work/lib"
cat >CTestTestfile.cmake <<END
add_test(script "$work/script.sh" "$work")
set_tests_properties(script PROPERTIES LABELS "house;slow" REQUIRED_FILES "$work/read by it" SKIP_RETURN_CODE 77)
add_test(program "$work/program")
set_tests_properties(program PROPERTIES LABELS slow)
add_test(always "$work/program")
END

fail()
{
    cat said
    printf '%s\n' "$*"
    exit 1
}

# ran NAME: how often so far
ran()
{
    if [ -e "$1.ran" ]; then wc -l <"$1.ran"; else echo 0; fi
}

# expect WHAT SCRIPT PROGRAM STATUS [OPTION...]: a run in which the script ran so often, and the program, which is two tests
expect()
{
    local what=$1 script=$2 program=$3 expected=$4 status=0 script_before program_before
    shift 4
    script_before=$(ran script) program_before=$(ran program)
    "$run_tests" "$@" . >said 2>&1 || status=$?
    [ $status -eq "$expected" ] || fail "$what: ended with the status $status"
    [ $(($(ran script) - script_before)) -eq "$script" ] || fail "$what: the script did not run $script times"
    [ $(($(ran program) - program_before)) -eq "$program" ] || fail "$what: the program did not run $program times"
}

# tells COUNT NAMES
tells()
{
    grep -qx "$1 passed before with the same inputs: $2" said || fail "does not tell that $2 was left out"
    grep -qx "$1 passed before with the same inputs: $2" check.log || fail "the log does not tell that $2 was left out"
}

# changed TEXT: other content in the same place
changed()
{
    echo "$1" >'read by it/deeper/input'
}

expect 'never passed before' 1 2 0 --quick
! grep -q 'passed before' said || fail 'tells of tests that passed before'
expect 'nothing changed' 0 1 0 --quick
tells 2 'program, script'
touch 'read by it/deeper/input' script.sh program
expect 'the same content, only younger' 0 1 0 --quick
tells 2 'program, script'
expect 'not quickly' 1 2 0
expect 'nothing changed, after all ran' 0 1 0 --quick

changed 'pass again'
expect 'what the script reads changed' 1 1 0 --quick
tells 1 program
touch 'read by it/another'
expect 'there is another file to read' 1 1 0 --quick
echo '# changed' >>script.sh
expect 'the script changed' 1 1 0 --quick
compile_library 1
expect 'the library changed' 0 2 0 --quick
tells 1 script
sed -i 's/\(add_test(script.*\))/\1 more)/' CTestTestfile.cmake
expect 'the command line changed' 1 1 0 --quick
expect 'nothing changed any more' 0 1 0 --quick

changed fail
expect 'it fails' 1 1 8 --quick
expect 'it failed before' 1 1 8 --quick
changed 'pass again'
expect 'it failed with other inputs; those it passed with do not count any more' 1 1 0 --quick
changed skip
expect 'it is skipped' 1 1 0 --quick
expect 'it was skipped' 1 1 0 --quick

changed hang
"$run_tests" --quick . >said 2>&1 &
for _ in $(seq 100); do
    [ ! -e hangs ] || break
    sleep 0.1
done
[ -e hangs ] || fail 'does not hang'
kill -TERM $!
! wait $! || fail 'was interrupted, and says that all passed'
sed -i 's/hang)/hung)/' script.sh
expect 'it was interrupted' 1 1 0 --quick
sed -i 's/hung)/hang)/' script.sh
sed -i 's/sleep 60/true/' script.sh
expect 'changed after the interruption' 1 1 0 --quick

# Nothing is left to run.
sed -i '/always/d' CTestTestfile.cmake
expect 'all are slow' 0 0 0 --quick

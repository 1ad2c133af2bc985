#!/bin/bash
# Completes command lines of qzaudio-bench in bash: by calling the completion, with the functions of the package bash-completion about and
# without, and by typing in an interactive shell. What fits is asked from the program in other ways. Then those of the other programs.
#
# Usage: completion.sh PROJECT BIN WORK
set -euo pipefail

project=$1 bin=$2 work=$3

fail()
{
    printf '%s\n' "$*" >&2
    exit 1
}

unset COLUMNS
rm -rf "$work"
mkdir -p "$work/bin" "$work/here/my drives" "$work/here/flash"
touch "$work/here/my drives/long way.js" "$work/here/own.js" "$work/here/--odd.js"
# The program itself, in the emulator where there is one; a command line that was completed and entered is noted.
cat >"$work/bin/qzaudio-bench" <<'STUB'
#!/bin/bash
# shellcheck disable=SC2086 # an emulator's command is several words
if [[ $1 != help || $2 != --complete ]] && [[ ${NOTE:-} ]]; then
    printf '<%s>' "$@" >>"$NOTE"
    echo >>"$NOTE"
else
    exec ${EMULATOR:-} "$BENCH" "$@"
fi
STUB
chmod +x "$work/bin/qzaudio-bench"
export BENCH=$bin/qzaudio-bench
for program in qzaudio-doctor qzaudio-focusd; do
    # shellcheck disable=SC2016 # for the stub
    printf '#!/bin/bash\nexec ${EMULATOR:-} "%s" "$@"\n' "$bin/$program" >"$work/bin/$program"
    chmod +x "$work/bin/$program"
done
ln -s "$bin/qzaudio-with-flash" "$work/bin"
PATH=$work/bin:$PATH
cd "$work/here"

completion=$project/packaging/qzaudio-bench.bash-completion
scenarios=$(find "$project/bench/scenarios" -name '*.js' -exec basename {} .js \;)
commands=$(qzaudio-bench help --commands)

# options_of COMMAND: as its help lists them
options_of()
{
    qzaudio-bench help "$1" | sed -nE 's/^  (-., )?(--[a-z-]+).*/\2/p'
}

# complete_words WORD...: sets COMPREPLY for a line of which the last WORD is being typed. Nothing may be printed.
complete_words()
{
    # shellcheck disable=SC2034 # bash gives them to a completion
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMP_LINE="$*" COMP_POINT=$((${#COMP_LINE}))
    COMPREPLY=()
    "$function" "$1" "${*: -1}" "${*: -2:1}" >"$work/printed" 2>&1
    [[ ! -s $work/printed ]] || fail "$*: prints $(cat "$work/printed")"
}

# fits EXPECTED WORD...: a line is completed with EXPECTED, one a line and in any order
fits()
{
    local expected is
    expected=$(printf '%s\n' "$1" | sort)
    shift
    complete_words qzaudio-bench "$@"
    is=$(printf '%s\n' "${COMPREPLY[@]}" | sort)
    [[ $is == "$expected" ]] || fail "qzaudio-bench $*: becomes" "$is" "and not" "$expected"
}

# with NAMES BEGIN: those that begin so
with()
{
    printf '%s\n' "$1" | grep -e "^$2"
}

all_lines()
{
    local command name
    fits "$commands" ''
    fits $'play\nplot' pl
    fits play pla
    fits '' fly
    fits $'--help\n--version' -
    fits '' fly ''
    for command in $commands; do
        fits "$(options_of "$command")" "$command" --
        fits "$(options_of "$command")" "$command" -
        fits --help "$command" --he
    done
    fits $'--realtime\n--repeat' play --re
    fits '' play --brief --nonsense

    # Values: a fixed set, a path, or what nobody knows.
    fits $'always\nauto\nnever' play --color ''
    fits $'always\nauto' play --color a
    fits $'always\nauto\nnever' play --color =
    fits $'always\nauto' play --color = a
    fits $'--color=always\n--color=auto' play --color=a
    fits $'exclusive\ngain\nmay-duck\ntransient' focus request me --hint ''
    fits '' focus --stream ''
    fits 'my drives' play --flash m
    fits '--flash=flash' play --flash=f
    fits own.js play --junit o
    fits own.js play --junit = o

    # Arguments
    fits "$scenarios"$'\nflash\nmy drives\nown.js\n--odd.js' play ''
    fits "$scenarios"$'\nflash\nmy drives\nown.js\n--odd.js' play --brief --color always own.js ''
    for name in $scenarios; do
        fits "$(with "$scenarios" "$name")" play "$name"
    done
    fits own.js play ow
    fits 'my drives' play 'my\ dr'
    fits 'my drives/long way.js' play 'my\ drives/'
    fits 'my drives/long way.js' play '"my drives/l'
    fits 'my drives/long way.js' play "'my drives/l"
    fits --odd.js play -- --o
    fits "$work/here/own.js" play "$work/here/o"
    fits own.js settings o
    fits $'equalizer\nfade\npolicy\ntimeline' plot ''
    fits own.js plot timeline ow
    fits '' plot timeline own.js ''
    fits '' plot fade ''
    fits "$(printf 'mode%d\n' {0..6})" plot equalizer mode
    fits $'flash\nmy drives\nown.js\n--odd.js' plot policy -o ''
    fits '' settings own.js o
    fits $'abandon\ncurrent\nmonitor\nrequest' focus ''
    fits '' focus request ''
    fits "$commands"$'\nAudioControl\nAudioPolicy\nAudioSettings\nPlatform' help ''
    fits $'AudioPolicy.setVolResponse\nAudioPolicy.setVolume' help AudioPolicy.setV
    fits settings help s
    fits '' help settings ''

    # Called by its path, where it is missing, and where it is something else.
    complete_words "$work/bin/qzaudio-bench" pla
    [[ ${COMPREPLY[*]} == play ]] || fail "by its path: becomes ${COMPREPLY[*]}"
    for name in missing-bench "$work/bin/missing" "$work/bin/reader" "$work/here"; do
        complete_words "$name" pla
        [[ ! ${COMPREPLY[*]} ]] || fail "$name: becomes ${COMPREPLY[*]}"
    done
}

# A program that waits for input, and complains.
printf '#!/bin/sh\ncat >/dev/null\necho no >&2\nexit 1\n' >"$work/bin/reader"
chmod +x "$work/bin/reader"

# What stands on the standard input is not the completion's to read, and it must not wait for it.
exec < <(sleep infinity)
input=$!
trap 'kill $input' EXIT

# shellcheck source=/dev/null
. "$completion"
read -r -a registered < <(complete -p qzaudio-bench)
function=${registered[2]}
all_lines
# A function of the package bash-completion, which may be about, or not.
# shellcheck disable=SC2317
_init_completion()
{
    echo "the package bash-completion is used"
    return 1
}
all_lines
unset -f _init_completion

# typed EXPECTED KEYS: what the program is started with
cat >"$work/rc" <<'RC'
. "$COMPLETION"
PS1=
RC
typed()
{
    rm -f "$work/note"
    printf '%b\nexit\n' "$2" | COMPLETION=$completion NOTE=$work/note INPUTRC=/dev/null HISTFILE='' TERM=dumb \
        timeout 60 script --quiet --return --command "bash --noprofile --rcfile '$work/rc' -i" /dev/null >"$work/shown" || true
    [[ $(cat "$work/note") == "$1" ]] || fail "typed $2: starts $(cat "$work/note"), not $1; the terminal shows $(cat "$work/shown")"
}
typed '<play><own.js>' 'qzaudio-bench pla\tow\t'
typed '<play><my drives/long way.js>' 'qzaudio-bench pla\tmy\\ d\tlo\t'
typed '<play><my drives/long way.js>' 'qzaudio-bench play "my dr\tlo\t'
typed '<play><--color=always><own.js>' 'qzaudio-bench play --co\t\b=al\town\t'
typed '<play><--flash><my drives/><own.js>' 'qzaudio-bench play --fl\tmy\t own.js'
typed '<focus><request><me><--hint><may-duck>' 'qzaudio-bench fo\treq\tme --hi\tma\t'

# These have options only, and qzaudio-with-flash another program's command line behind them.
# shellcheck source=/dev/null
. "$project/packaging/qzaudio-options.bash-completion"
# option_fits EXPECTED PROGRAM WORD: in this order
option_fits()
{
    complete_words "$2" "$3"
    [[ ${COMPREPLY[*]} == "$1" ]] || fail "$2 $3: becomes ${COMPREPLY[*]} and not $1"
}
for program in qzaudio-doctor qzaudio-focusd qzaudio-with-flash; do
    read -r -a registered < <(complete -p $program)
    function=${registered[-2]}
    options=$($program --help | grep -oE '^  (-., )?--[a-z-]+' | grep -oE -e '--.*' | paste --serial --delimiters=' ')
    [[ $options == *--help* ]] || fail "the help of $program tells the options $options"
    option_fits "$options" $program --
    option_fits '' $program ''
    option_fits '' $program o
    option_fits '' "$work/bin/missing" --
done
option_fits --patience qzaudio-doctor --p
option_fits --size qzaudio-with-flash --s

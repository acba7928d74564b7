# Shared by the scripts of this folder. Before a script reads this file, it sets `needs` to the files and commands of
# its host.
#
#   SCRIPT --can    prints nothing; succeeds if the host is installed
set -u

can() {
    local need
    for need in "${needs[@]}"; do
        [ -e "$need" ] || command -v "$need" >/dev/null || return 1
    done
}
if [ "${1-}" = --can ]; then
    can
    exit
fi

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}
can || fail "one of these is not installed: ${needs[*]}"

root=$(realpath "$(dirname "$0")/../..")
dist=$root/build/native/dist
library="$dist/Parametric Equalizer.so"
parameters=(Volume 'Frequency(1)' 'Frequency(2)' 'Frequency(3)' 'Frequency(4)' 'Gain(1)' 'Gain(2)' 'Gain(3)' 'Gain(4)'
    'Q(1)' 'Q(2)' 'Q(3)' 'Q(4)')

# Hosts write to their home folder. The texts are English, whatever the user's environment selects.
work=$(mktemp -d --tmpdir "foreign host.XXXXXX") || fail "there is no folder for temporary files"
trap 'rm -rf -- "$work"' EXIT
export HOME=$work/home LC_ALL=C
unset TUNEBENCH_LANGUAGE "${!XDG_@}"
mkdir "$HOME" || fail "$HOME cannot be made"

# Runs a host for at most `limit` seconds. Each line of standard input must be a line of its output, in any indentation.
#   host_says COMMAND... <<'END'
limit=60
host_says() {
    local code line
    timeout "$limit" "$@" </dev/null 2>&1 | tr -d '\r' | sed 's/^[[:blank:]]*//' >"$work/said"
    code=${PIPESTATUS[0]}
    [ "$code" = 0 ] || { cat "$work/said"; fail "this ended with $code: $*"; }
    while IFS= read -r line; do
        grep -qxF -- "$line" "$work/said" || { cat "$work/said"; fail "the host does not say: $line"; }
    done
}

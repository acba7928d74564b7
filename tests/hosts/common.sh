# The functions that the scripts of this folder share. Before a script reads this file, it sets `needs` to the files and
# commands that its host needs.
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
work=$(mktemp -d --tmpdir "foreign host.XXXXXX") || fail "the folder for temporary files cannot be used"
trap 'rm -rf -- "$work"' EXIT
export HOME=$work/home LC_ALL=C
unset TUNEBENCH_LANGUAGE "${!XDG_@}"
mkdir "$HOME" || fail "$HOME cannot be created"

# Runs a host for at most `limit` seconds. The output must contain each line of standard input, in any indentation and
# order.
#   host_says COMMAND... <<'END'
limit=180
host_says() {
    local code line
    timeout "$limit" "$@" </dev/null 2>&1 | tr -d '\r' | sed 's/^[[:blank:]]*//' >"$work/said"
    code=${PIPESTATUS[0]}
    [ "$code" = 0 ] || { cat "$work/said"; fail "this command ended with exit code $code: $*"; }
    while IFS= read -r line; do
        grep -qxF -- "$line" "$work/said" || { cat "$work/said"; fail "the host does not print this line: $line"; }
    done
}

# Prints the header of an AU file with 32-bit big-endian floats.
#   write_au_head RATE CHANNELS
write_au_head() {
    local rate
    rate=$(printf '\\x%02x\\x%02x\\x%02x' $(($1 >> 16)) $(($1 >> 8 & 255)) $(($1 & 255)))
    printf ".snd\0\0\0\x18\xff\xff\xff\xff\0\0\0\6\0$rate\0\0\0\x$2"
}

# Writes `frames` frames of noise between 1/8 and 1/2. Each sample is written REPEATED times.
#   write_noise FILE RATE CHANNELS REPEATED
write_noise() {
    {
        write_au_head "$2" "$3"
        printf "$(awk -v samples=$((frames * $3 / $4)) -v repeated="$4" 'BEGIN {
            srand(1)
            while (samples--) {
                sign = rand() < 0.5 ? "3e" : "be"
                text = sprintf("\\x%s\\x%x\\x%x\\x%x", sign, rand() * 256, rand() * 256, rand() * 256)
                for (i = 0; i < repeated; i++) printf "%s", text
            }
        }')"
    } >"$1"
}

# Writes a mono file with `frames` frames: a sample of 1, and then silence.
#   write_impulse FILE RATE
write_impulse() {
    { write_au_head "$2" 1; printf '\x3f\x80\0\0'; head -c $((frames * 4 - 4)) /dev/zero; } >"$1"
}

# Copies the LV2 bundle into a folder without other bundles, and lets hosts search only this folder.
uri=urn:tavrin:parametric-equalizer
copy_lv2_bundle() {
    export LV2_PATH=$work/lv2
    rm -rf "$work/lv2"
    mkdir "$work/lv2"
    cp -r "$dist/parametric-equalizer.lv2" "$work/lv2" || fail "the LV2 bundle is not built"
}

# Functions that the scripts share: source this file.
# shellcheck shell=bash
#
# Everything made here lies below build/ (what is to be given to users: dist/): the presets' folders, the private Wine
# prefix (build/wine), logs (build/logs). Progress goes to standard error; a command's output is shown only when it fails.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
release_bin=$root/build/mingw-release/bin
name=script/${0##*/}

# Sorting, messages and numbers do not depend on the person's language.
export LC_ALL=C.UTF-8

say() { echo "$name: $*" >&2; }

die() {
    say "$*"
    exit 1
}

# logged LOG COMMAND...: runs the command with its output in build/logs/LOG; on failure shows the end of it, without
# the steps that went well.
logged() {
    local log=$root/build/logs/$1
    shift
    mkdir -p "${log%/*}"
    "$@" </dev/null >"$log" 2>&1 || {
        grep -Ev '^\[[0-9]+/[0-9]+\] ' "$log" | tail -n 60 >&2
        die "failed: $* (all of it in ${log#"$root"/})"
    }
}

configure() { logged "$1.configure" cmake -S "$root" --preset "$1"; }

# build PRESET [TARGET...]: configures it and compiles the targets, or all of them.
build() {
    local preset=$1
    shift
    say "building $preset"
    configure "$preset"
    logged "$preset.build" cmake --build "$root/build/$preset" ${1+--target "$@"}
}

# --- Windows programs ------------------------------------------------------------------------------------------

export WINEPREFIX=$root/build/wine
export WINEARCH=win64
export WINEDEBUG=-all
# No .NET, no HTML engine, no menu entries in the user's home.
export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=d'
unset DISPLAY WAYLAND_DISPLAY

windows_path() {
    local path
    path=$(realpath -m -- "$1")
    echo "Z:${path//\//\\}"
}

# windows PROGRAM [ARGUMENT...]: runs a Windows program, whose lines arrive ending as they do here. The status is the
# program's. The pipe also keeps Wine from changing the terminal's mode.
windows() { wine "$@" </dev/null 9>&- | tr -d '\r'; }

# enter_wine: from here to the end of the script the prefix belongs to this script alone, and its server keeps
# running with Windows' services, so that Windows programs start at once. A script that is called by such a script
# shares in that.
enter_wine() {
    [ -z "${QUORVANE_IN_WINE:-}" ] || return 0
    export QUORVANE_IN_WINE=1
    exec 9>"$root/build/.lock"
    flock -n 9 || {
        say 'waiting for another script to leave build/wine'
        flock 9
    }
    trap leave_wine EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM
    [ -e "$WINEPREFIX/.complete" ] || make_prefix
    start_wine
}

# enter_new_wine FOLDER: from here to the end of the script Windows programs run in a new prefix, in which nothing was ever
# registered. It is removed at the end: it takes 700 MB.
enter_new_wine() {
    export WINEPREFIX=$1
    trap 'leave_wine; wineserver -w; rm -rf "$WINEPREFIX"' EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM
    make_prefix
    start_wine
}

start_wine() {
    start_wine_server
    # The first program starts the services, which keep its output open: whoever captured it would wait for them.
    wine cmd /c exit </dev/null >/dev/null 2>&1 9>&- || die 'Wine does not start'
}

# Should the script be killed, the server ends a minute after its last program; the lock is free at once, because
# nothing of Wine inherits it (9>&-).
start_wine_server() { wineserver -p60 9>&-; }

leave_wine() { wineserver -k 2>/dev/null || true; }

make_prefix() {
    say "making the private Wine prefix ${WINEPREFIX#"$root"/}"
    leave_wine
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    start_wine_server
    logged wine.prefix wineboot -i 9>&-
    logged wine.classes wine "$release_bin/link_user_classes.exe" 9>&-
    # The server writes the registry to disk when it ends.
    leave_wine
    wineserver -w
    touch "$WINEPREFIX/.complete"
}

# register PRESET: lets the preset's DLLs enter themselves for the user, as a person would have them do on Windows.
register() {
    local dll
    for dll in Quorvane PengRobinson; do
        windows regsvr32 /s "$(windows_path "$root/build/$1/bin/$dll.dll")" ||
            die "build/$1/bin/$dll.dll cannot register itself (regsvr32 answers $?)"
    done
}

# The packages that the worksheets in examples/ use.
manager=Tarnwick.PengRobinsonManager.1
example_packages=(--package Gas=Tarnwick.PengRobinson.1 --package "Natural gas=$manager!Natural gas"
    --package "Air=$manager!Air separation" --package "Aromatics=$manager!Benzene and toluene")

# recalculate NAME [OPTION...]: the worksheet examples/NAME.csv with its packages.
recalculate() {
    windows "$release_bin/quorvane-sheet.exe" recalc "$(windows_path "$root/examples/$1.csv")" "${example_packages[@]}" \
        "${@:2}"
}

# pictures FOLDER: draws the pictures of the documentation from the examples. They do not depend on the machine.
pictures() {
    draw_example "$1" txy --x A9:A19 --y C9:C19 --y H9:H19
    draw_example "$1" pxy --x A9:A19 --y C9:C19 --y H9:H19
    draw_example "$1" phase_envelope --x A9:A23 --y B9:B23 --x C9:C22 --y D9:D22 --x E9:E25 --y F9:F25
}
draw_example() { recalculate "$2" --svg "$(windows_path "$1/$2.svg")" "${@:3}" >/dev/null; }

# with_screen COMMAND...: runs the command with a screen that nobody sees, where Windows programs can show windows. All
# windows live where the first program found a screen, so Wine is started anew before and after.
with_screen() (
    # Read as a file, the process belongs to this subshell, which ends it whatever happens.
    exec {number_of_screen}< <(exec Xvfb -displayfd 1 -screen 0 1024x768x24 -nolisten tcp 2>/dev/null 9>&-)
    screen=$!
    trap 'unset DISPLAY; leave_wine; wineserver -w; kill "$screen"; start_wine' EXIT
    read -r -t 60 number <&"$number_of_screen" || die 'Xvfb does not start'
    leave_wine
    wineserver -w
    export DISPLAY=:$number
    start_wine
    "$@"
)

# --- Checks ----------------------------------------------------------------------------------------------------

failures=0

# check DESCRIPTION COMMAND...: one test, which passes when the command succeeds; prints "ok" or "not ok" and the
# description, and what a failing command said.
check() {
    local description=$1 said
    shift
    if said=$("$@" 2>&1); then
        echo "ok $description"
    else
        echo "not ok $description"
        printf '%s\n' "$said" | sed 's/^/    /'
        failures=$((failures + 1))
    fi
}

# is_text EXPECTED FILE: succeeds when the file holds just that text; shows the difference otherwise.
is_text() { diff -u --label expected --label found <(printf '%s\n' "$1") "$2"; }

end_checks() { exit $((failures > 0)); }

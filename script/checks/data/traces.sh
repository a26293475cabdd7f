# What installing leaves behind, for the checks that source this file after lib.sh; $work is their folder.
# shellcheck shell=bash disable=SC2034,SC2154

office='HKCU\Software\Microsoft\Office'
options=$office'\16.0\Excel\Options'

registry() { windows reg "$@" >/dev/null; }

# other_add_ins: a user with other makers' programs, an Excel with add-ins of other makers, and one of a version that the add-in does not serve.
other_add_ins() {
    registry add 'HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall' /f
    mkdir -p "$WINEPREFIX/drive_c/users/$USER/AppData/Local/Programs"
    registry add "$options" /v OPEN /d '/R "C:\other.xll"' /f
    registry add "$options" /v OPEN1 /d '/A "Other.AddIn"' /f
    registry add "$options" /v Font /d 'Calibri,11' /f
    registry add "$office"'\16.0\Excel\Add-in Manager' /v Other.Unchecked /d '' /f
    registry add "$office"'\12.0\Excel\Options' /v OPEN /d '/A "Other.AddIn"' /f
}

# without_wine: the text of the registry without what Wine keeps about itself.
without_wine() { awk '/^\[/ { own = /^\[HKEY_CURRENT_USER\\Software\\Wine[]\\]/ } !own'; }

# snapshot NAME: every key and value of the user and of the machine's software, and every file, as two texts.
snapshot() {
    local part
    for part in HKEY_CURRENT_USER 'HKEY_LOCAL_MACHINE\Software'; do
        windows regedit /E "$(windows_path "$work/export.reg")" "$part"
        iconv -f UTF-16 -t UTF-8 "$work/export.reg" | tr -d '\r' | without_wine
    done >"$work/$1.registry"
    (cd "$WINEPREFIX/drive_c" && find . | sort) >"$work/$1.files"
}

# is_as NAME: the registry and the files are as they were at that snapshot.
is_as() {
    snapshot now
    diff "$work/$1.registry" "$work/now.registry" && diff "$work/$1.files" "$work/now.files"
}

opens() {
    windows reg query "$options" | sed -n 's/^ *\(OPEN[0-9]*\) *REG_SZ */\1=/p' | is_text "$1" /dev/stdin
}
with_ours='OPEN=/R "C:\other.xll"
OPEN1=/A "Other.AddIn"
OPEN2=/A "Quorvane.Excel.1"'

script_answers='enthalpy: J/mol
enthalpy by mass: J/kg
nonsense: Invalid/unknown property "nonsense"'

ask_for_units() {
    rm -f "$work/answers"
    windows cscript //nologo "$(windows_path "$root/script/checks/data/unit_of_measure.vbs")" \
        "$(windows_path "$work/answers")"
}

a_script_gets_answers() { ask_for_units && is_text "$script_answers" <(tr -d '\r' <"$work/answers"); }

# Wine's script host ends with 0 even when the script fails. On its first run it enters its own type library.
a_script_gets_nothing() { ask_for_units && [ ! -e "$work/answers" ]; }

# ends_with STATUS COMMAND...
ends_with() {
    local status=0
    "${@:2}" || status=$?
    [ "$status" -eq "$1" ] || {
        echo "exit code $status instead of $1"
        return 1
    }
}

# flash_is_calculated FILE: the table of the natural gas has its two phases.
flash_is_calculated() {
    grep -E '^ *[0-9]+ +phaseFraction +mol/mol +1 +0\.89004340* +0\.10995660*$' "$1" || {
        echo 'the vapour fraction of the natural gas is missing:'
        cat "$1"
        return 1
    }
}

# with_stand_in NAME WHAT COMMAND...: while a program of that name runs, which has a window like Excel's ("window"), or a file
# open for itself (its name), or neither ("").
with_stand_in() {
    local sign=$work/running status=0 program
    cp "$release_bin/excel_stand_in.exe" "$work/$1"
    windows "$work/$1" "$(windows_path "$sign")" ${2:+"$2"} >/dev/null &
    program=$!
    for _ in $(seq 600); do
        [ ! -e "$sign" ] || break
        sleep 0.1
    done
    [ -e "$sign" ] || echo "$1 does not start"
    "${@:3}" || status=$?
    rm -f "$sign"
    wait "$program"
    return "$status"
}

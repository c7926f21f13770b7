#!/usr/bin/env bash
# x11.sh ZENVORA ZENVORA_CLI SAMPLES FOLDER: the program in a real X11 window, driven by keys alone: it opens the sample,
# is looked at, loses its X server in the middle of its work, and is started and left again. The picture of the screen
# stays in FOLDER. Status 77: there is no X server to be had here.
set -euo pipefail
zenvora=$1 cli=$2 samples=$3 folder=$4

for tool in Xvfb xdotool; do
    command -v "$tool" >/dev/null || { echo "no $tool here: not tried"; exit 77; }
done
work=$(mktemp -d)
server=
program=
finish() {
    [ -z "$program" ] || kill "$program" 2>/dev/null || true
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    wait
    rm -rf "$work"
}
trap finish EXIT
fail() {
    echo "$*" >&2
    [ ! -s "$work/zenvora.log" ] || cat "$work/zenvora.log" >&2
    exit 1
}

mkdir -p "$folder" "$work/run" "$work/files"
chmod 700 "$work/run"
cp "$samples"/LISTINGS.CSV "$samples"/LISTINGS.map "$work/files/"
export ZENVORA_HOME=$work/home XDG_RUNTIME_DIR=$work/run QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY QT_SCALE_FACTOR

start_server() {
    : >"$work/display"
    Xvfb -displayfd 3 -screen 0 1280x900x24 -noreset -nolisten tcp 3>"$work/display" >"$work/server.log" 2>&1 &
    server=$!
    for _ in $(seq 100); do
        [ ! -s "$work/display" ] || break
        sleep 0.1
    done
    [ -s "$work/display" ] || { cat "$work/server.log"; echo "no X server can be started here: not tried"; exit 77; }
    DISPLAY=:$(cat "$work/display")
    export DISPLAY
}

start_program() {
    "$zenvora" >"$work/zenvora.log" 2>&1 &
    program=$!
}

# window TITLE: waits for a window of that title and gives it the keys, as a window manager would.
window() {
    local id=
    for _ in $(seq 150); do
        id=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -n 1 || true)
        [ -z "$id" ] || break
        kill -0 "$program" 2>/dev/null || fail "the program ended before its window came: $1"
        sleep 0.1
    done
    [ -n "$id" ] || fail "no window came: $1"
    xdotool windowfocus --sync "$id" >/dev/null 2>&1 || true
    sleep 0.3
}

start_server
start_program
window '^Select File to Calculate$'
xdotool key Return
window '^Open Database$'
xdotool type --delay 5 "$work/files/LISTINGS.CSV"
xdotool key Return
# The message about the rows that were refused, and then the main window.
for _ in $(seq 150); do
    [ -z "$(xdotool search --onlyvisible --name '^Zenvora - Version' || true)" ] || break
    message=$(xdotool search --onlyvisible --name 'Import|Zenvora' 2>/dev/null | tail -n 1 || true)
    if [ -n "$message" ]; then
        xdotool windowfocus "$message" 2>/dev/null || true
        xdotool key Return
    fi
    sleep 0.2
done
window '^Zenvora - Version'
if command -v import >/dev/null; then
    import -window root "$folder/x11.png"
fi

# The date is typed, which checks and stores every record, and the server dies meanwhile.
xdotool key --delay 20 Tab Tab
xdotool type --delay 20 "6/30/2026"
kill -9 "$server"
wait "$server" 2>/dev/null || true
server=
for _ in $(seq 100); do
    kill -0 "$program" 2>/dev/null || break
    sleep 0.1
done
! kill -0 "$program" 2>/dev/null || fail "the program outlived its X server"
wait "$program" 2>/dev/null || true
program=
databook=$(find "$work/home" -iname 'LISTINGS.mdb' | head -n 1)
[ -n "$databook" ] || fail "there is no Databook"
"$cli" verify "$databook" || fail "the Databook did not survive the end of the X server"
[ "$("$cli" records "$databook" --format json | grep -c CENTRALKEY)" -eq 384 ] || fail "records were lost"

# Started again, on the Databook that is there, and left by its Exit button.
start_server
start_program
window '^Select File to Calculate$'
xdotool key Return
window '^Open Database$'
xdotool type --delay 5 "$databook"
xdotool key Return
window '^Zenvora - Version'
xdotool key alt+x
status=0
for _ in $(seq 100); do
    kill -0 "$program" 2>/dev/null || break
    sleep 0.1
done
! kill -0 "$program" 2>/dev/null || fail "the program did not end by its Exit button"
wait "$program" || status=$?
program=
[ "$status" -eq 0 ] || fail "the program ended with status $status"
grep -q 'CURRDATABOOK=LISTINGS.MDB' "$ZENVORA_HOME/Appraise/ZVR.INI" || fail "the Databook was not stored as the last one"

#!/usr/bin/env bash
# Drives the coding line with a real pinyin input method, switched on in the whole session: the line itself must get
# "PL3" as typed, the comment its Chinese words, and the Enter that ends a word must store nothing.
#
#   drive_pinyin.sh PROGRAM_FOLDER DROVANE DROVANE_CLI
#
# Ends with 77 (skipped) where the programs that it needs aren't there.
set -euo pipefail
folder=$(readlink -f "$1") drovane=$(readlink -f "$2") cli=$(readlink -f "$3")

for program in Xvfb xdotool fcitx5 fcitx5-remote dbus-run-session ffmpeg; do
    if ! command -v "$program" >/dev/null; then
        echo "skipped: $program isn't there" >&2
        exit 77
    fi
done
if [[ ${DROVANE_IN_SESSION:-} != yes ]]; then
    DROVANE_IN_SESSION=yes exec dbus-run-session -- "$0" "$folder" "$drovane" "$cli"
fi

work=$(mktemp -d)
server=
cleanup() {
    pkill -P $$ 2>/dev/null || true
    [[ -z $server ]] || kill "$server" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

export HOME=$work/home XDG_CONFIG_HOME=$work/home/.config XDG_RUNTIME_DIR=$work/runtime
mkdir -p "$XDG_CONFIG_HOME/fcitx5" "$work/job"
mkdir -m 700 "$XDG_RUNTIME_DIR"
cat >"$XDG_CONFIG_HOME/fcitx5/profile" <<'PROFILE'
[Groups/0]
Name=Default
Default Layout=us
DefaultIM=pinyin

[Groups/0/Items/0]
Name=keyboard-us
Layout=

[Groups/0/Items/1]
Name=pinyin
Layout=

[GroupOrder]
0=Default
PROFILE

cp -r "$folder" "$work/program"
cp "$drovane" "$work/program/drovane"  # which looks for all else beside itself
run() { "$cli" --app-folder "$work/program" "$@"; }
ffmpeg -v error -f lavfi -i testsrc=size=360x288:rate=25:duration=4 -c:v mpeg4 -g 12 "$work/job/v.avi"
project=$(run new 拼音 --standard "$(run standards --json | python3 -c 'import json,sys; print(json.load(sys.stdin)[0]["Name"])')")
cat >"$work/job.json" <<JOB
{"sections": [{"StartWell": "Y1", "EndWell": "Y2", "PipeLength": "30", "DistanceEnd": 30, "VideoFileList": "${work//\//\\\\}\\\\job\\\\v.avi", "records": []}]}
JOB
run load "$project" "$work/job.json"

exec 3< <(exec Xvfb -displayfd 1 -screen 0 1366x768x24 -nolisten tcp 2>/dev/null)
read -r number <&3
export DISPLAY=:$number XMODIFIERS=@im=fcitx QT_IM_MODULE=fcitx QT_QPA_PLATFORM=xcb
fcitx5 --disable=wayland,cloudpinyin >"$work/fcitx.log" 2>&1 &
"$work/program/drovane" "$project" >"$work/drovane.log" 2>&1 &
window=$(timeout 30 xdotool search --sync --onlyvisible --name 拼音 | head -1)
sleep 3
xdotool windowfocus "$window" || true
sleep 1

# The program holds the project; a copy of its file can be read.
records() {
    cp "$project" "$work/copy.mdb"
    run records "$work/copy.mdb" --json
}
key() { xdotool key --delay 60 "$@"; }

# The whole of what is typed goes through the input method.
key slash
sleep 0.5
fcitx5-remote -o
sleep 0.3
xdotool type --delay 60 'PL3 12.4 0903'
key Tab
sleep 0.5
fcitx5-remote -o
sleep 0.3
xdotool type --delay 80 'liefeng'
sleep 0.5
[[ -z ${DROVANE_SCREENSHOTS:-} ]] || import -window root "$DROVANE_SCREENSHOTS/pinyin.png"
key space
sleep 0.5
xdotool type --delay 80 'guandao'
sleep 0.3
key Return
sleep 0.7
before=$(records | python3 -c 'import json,sys; print(len(json.load(sys.stdin)))')
key Return
sleep 1.5
after=$(records)
python3 - "$before" "$after" <<'PYTHON'
import json, sys
before, after = int(sys.argv[1]), json.loads(sys.argv[2])
assert before == 0, "the Enter that ended the word stored the line"
assert len(after) == 1, f"{len(after)} records instead of one"
record = after[0]
assert record["DefectCode"] == "PL" and record["DefectLevel"] == 3, record
assert abs(record["DistanceStart"] - 12.4) < 1e-3 and record["DirectionStart"] == 9, record
assert any("\u4e00" <= c <= "\u9fff" for c in record["Comment"]), record["Comment"]
assert record["Comment"].endswith("guandao"), record["Comment"]
print("stored as typed:", record["Comment"])
PYTHON

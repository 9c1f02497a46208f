#!/usr/bin/env bash
# kdenlive_saves.sh PROJECT [PICTURE]: opens a project in Kdenlive, on the display at hand and with settings of its own,
# and has Kdenlive save it again. Fails if Kdenlive asks anything or doesn't save. PICTURE: where to keep what it shows.
set -euo pipefail
project=$1
name=$(basename "$project" .kdenlive)
own=$(mktemp -d)
program=
trap '[ -z "$program" ] || kill -9 "$program" 2>/dev/null || true; wait; rm -rf "$own"' EXIT
mkdir -p "$own/run" "$own/tmp"
chmod 700 "$own/run"
export HOME=$own XDG_CONFIG_HOME=$own/config XDG_DATA_HOME=$own/data XDG_CACHE_HOME=$own/cache XDG_RUNTIME_DIR=$own/run
export TMPDIR=$own/tmp LANG=C.UTF-8 LC_ALL=C.UTF-8
kdenlive "$project" >"$own/log" 2>&1 &
program=$!

titles() {
  local window
  for window in $(xdotool search --onlyvisible --class kdenlive 2>/dev/null); do
    xdotool getwindowname "$window" 2>/dev/null || true
  done
}
seen() { titles | grep -q "^$name"; }
asked() { titles | grep -vE "^($name.*|[Kk]denlive|)\$"; }

for ((i = 0; i < 240; ++i)); do
  if seen; then break; fi
  if asked; then echo "Kdenlive asks before it has opened the project" >&2; exit 1; fi
  kill -0 "$program" 2>/dev/null || { tail -5 "$own/log" >&2; exit 1; }
  sleep 0.5
done
seen || { echo "Kdenlive doesn't show the project: $(titles)" >&2; exit 1; }
sleep 3 # clips load, and a question about them would come now
if asked; then echo "Kdenlive asks about the project" >&2; exit 1; fi
[ $# -lt 2 ] || import -window root "$2"
# Saving is greyed out until something is changed.
action() {
  dbus-send --session --print-reply --dest="$service" /kdenlive/MainWindow_1 "org.kde.KMainWindow.$1" string:file_save \
    >/dev/null
}
service=$(dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.ListNames |
  grep -o 'org\.kde\.kdenlive[^"]*' | head -1)
action enableAction
action activateAction
for ((i = 0; i < 60; ++i)); do
  if grep -q kdenliveversion "$project"; then exit 0; fi
  sleep 0.5
done
echo "Kdenlive doesn't save the project: $(titles)" >&2
exit 1

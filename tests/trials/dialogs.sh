#!/usr/bin/env bash
# File dialogs with the real programs on a display of their own: types a name as
# a person would and looks at what the members give. Takes the folder with
# orvixctl. Needs Xvfb, xdotool and zenity, 77 when one is missing; kdialog is
# tried too where it is installed.
set -eu
bin=$(cd "${1:?folder with orvixctl}" && pwd)
for tool in Xvfb xdotool zenity; do
  command -v "$tool" > /dev/null || { echo "skipped: no $tool"; exit 77; }
done

scratch=$(mktemp -d)
server=
finish() {
  [ -z "$server" ] || kill "$server" || true
  rm -rf "$scratch"
}
trap finish EXIT
export HOME=$scratch/home XDG_RUNTIME_DIR=$scratch/run XDG_DATA_HOME=$scratch/data ORVIX_REGISTRY=$scratch/registry
export LC_ALL=C.UTF-8 NO_AT_BRIDGE=1 GSETTINGS_BACKEND=memory QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY
mkdir -p "$HOME" "$scratch/files"
mkdir -m 700 "$XDG_RUNTIME_DIR"
touch "$scratch/files/-ä b.txt" "$scratch/files/other.txt"
files="Z:${scratch//\//\\}\\files"

# The server picks a free number and says it once it is ready.
mkfifo "$scratch/number"
Xvfb -displayfd 3 -screen 0 1024x768x24 3> "$scratch/number" 2> /dev/null &
server=$!
read -r number < "$scratch/number"
export DISPLAY=:$number

# trial LABEL WANTED KEYS... -- CALL...: calls the member, waits for its dialog,
# which has the title "Trial", and types.
trial() {
  local label=$1 wanted=$2 keys=() window given call
  shift 2
  while [ "$1" != -- ]; do keys+=("$1"); shift; done
  shift
  "$bin/orvixctl" call "$@" > "$scratch/given" 2>&1 &
  call=$!
  window=$(timeout 30 xdotool search --sync --onlyvisible --name '^Trial' | tail -n 1)
  [ -n "$window" ] || { echo "FAILED $label: no dialog"; cat "$scratch/given"; kill "$call"; exit 1; }
  xdotool windowfocus --sync "$window"
  for key in "${keys[@]}"; do
    case $key in
      type:*) xdotool type --delay 60 "${key#type:}" ;;
      *) xdotool key --delay 60 "$key" ;;
    esac
  done
  timeout 30 tail --pid="$call" -f /dev/null || { echo "FAILED $label: still shown"; kill "$call"; exit 1; }
  given=$(cat "$scratch/given")
  if ! grep -qxF -- "$wanted" <<< "$given"; then
    printf 'FAILED %s\n  wanted: %s\n  given:  %s\n' "$label" "$wanted" "$given"
    exit 1
  fi
  echo "passed: $label"
}

desktops=GNOME
if command -v kdialog > /dev/null; then desktops="GNOME KDE"; fi
for desktop in $desktops; do
  export XDG_CURRENT_DESKTOP=$desktop
  # An absolute name typed into either dialog stands for itself.
  trial "$desktop opens" "$files\\other.txt" "type:$scratch/files/other.txt" Return \
    -- classOrvix.OpenFile 0 @ sInitDir:="$files" sTitle:=Trial sFilters:='All|*.*|Text|*.txt'
  trial "$desktop saves a name with a dash" "$files\\-ä b.txt.new" Return \
    -- classOrvix.SaveFile 0 @ sInitDir:="$files" sDefaultFileName:='-ä b.txt.new' sTitle:=Trial
  trial "$desktop cancels" "bCancel = True" Escape \
    -- classOrvix.OpenFile 0 @ sInitDir:="$files" sTitle:=Trial
done

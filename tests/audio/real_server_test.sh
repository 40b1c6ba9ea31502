#!/usr/bin/env bash
# Runs the desktop's sound tests against a private PulseAudio: real_server_test.sh TEST_PROGRAM
# The server lives in a folder of its own with a null sink and a source that hears it, and is stopped by its process id.
# The tests end it and start it again: real_server_test.sh --serve
# Exit status 77 when there is no PulseAudio on this machine.
set -uo pipefail

# Starts the server in $PARLOWEN_SERVER and leaves its process id there.
serve() {
  rm -f "$PARLOWEN_SERVER/run/native"
  pulseaudio -n --daemonize=no --exit-idle-time=-1 --disallow-exit --use-pid-file=no --realtime=no --high-priority=no \
    -L "module-native-protocol-unix socket=$PARLOWEN_SERVER/run/native auth-anonymous=1" \
    -L "module-null-sink sink_name=other rate=16000" \
    -L "module-remap-source source_name=deaf master=other.monitor" \
    -L "module-null-sink sink_name=room rate=16000" \
    -L "module-remap-source source_name=mic master=room.monitor" >>"$PARLOWEN_SERVER/log" 2>&1 </dev/null &
  echo $! >"$PARLOWEN_SERVER/pid"
  for _ in $(seq 100); do
    pactl info >/dev/null 2>&1 && break
    kill -0 $! 2>/dev/null || break
    sleep 0.1
  done
  pactl set-default-sink room && pactl set-default-source mic
}
alive() { kill -0 "$(cat "$PARLOWEN_SERVER/pid" 2>/dev/null)" 2>/dev/null; }

if [ "$1" = --serve ]; then
  serve
  exit
fi
program=$1

if ! command -v pulseaudio >/dev/null 2>&1 || ! command -v pactl >/dev/null 2>&1; then
  echo "*** SKIPPED: pulseaudio or pactl is missing; playing and recording were NOT tested. ***" >&2
  echo "*** scripts/install-dependencies.sh test installs them.                             ***" >&2
  exit 77
fi

folder=$(mktemp -d)
export XDG_RUNTIME_DIR=$folder/run HOME=$folder/home PARLOWEN_SERVER=$folder
export XDG_CONFIG_HOME=$HOME/.config PULSE_SERVER=unix:$folder/run/native
unset PULSE_SINK PULSE_SOURCE PULSE_COOKIE DBUS_SESSION_BUS_ADDRESS
mkdir -m 700 "$XDG_RUNTIME_DIR" "$HOME"
mkdir -p "$XDG_CONFIG_HOME/pulse" "$HOME/Documents"
echo "autospawn = no" > "$XDG_CONFIG_HOME/pulse/client.conf"
cleanup() {
  alive && kill -KILL "$(cat "$folder/pid")"
  rm -rf "$folder"
}
trap cleanup EXIT

# Sound has its own clock: a machine that is busy elsewhere for a moment drops some of it, whoever plays. A fault of the
# program shows every time, so the tests may be tried again.
result=1
for try in 1 2 3; do
  alive || serve || break
  "$program" --gtest_filter='SoundServer.*' && result=0 && break
  echo "*** try $try failed" >&2
done
alive || { echo "*** the server died. Its log:" >&2; cat "$folder/log" >&2; result=1; }
PULSE_SERVER=unix:$folder/nowhere "$program" --gtest_filter='Nowhere.*' || result=1
exit $result

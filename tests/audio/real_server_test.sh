#!/usr/bin/env bash
# Runs the desktop's sound tests against a private PulseAudio: real_server_test.sh TEST_PROGRAM
# The server lives in a folder of its own with a null sink and a source that hears it, and is stopped by its process id.
# Exit status 77 when there is no PulseAudio on this machine.
set -uo pipefail
program=$1

if ! command -v pulseaudio >/dev/null 2>&1 || ! command -v pactl >/dev/null 2>&1; then
  echo "*** SKIPPED: pulseaudio or pactl is missing; playing and recording were NOT tested. ***" >&2
  echo "*** scripts/install-dependencies.sh test installs them.                             ***" >&2
  exit 77
fi

folder=$(mktemp -d)
export XDG_RUNTIME_DIR=$folder/run HOME=$folder/home
export XDG_CONFIG_HOME=$HOME/.config PULSE_SERVER=unix:$folder/run/native
unset PULSE_SINK PULSE_SOURCE PULSE_COOKIE DBUS_SESSION_BUS_ADDRESS
mkdir -m 700 "$XDG_RUNTIME_DIR" "$HOME"
mkdir -p "$XDG_CONFIG_HOME/pulse" "$HOME/Documents"
echo "autospawn = no" > "$XDG_CONFIG_HOME/pulse/client.conf"
server=
cleanup() {
  if [ -n "$server" ]; then
    kill "$server" 2>/dev/null
    wait "$server" 2>/dev/null
  fi
  rm -rf "$folder"
}
trap cleanup EXIT

pulseaudio -n --daemonize=no --exit-idle-time=-1 --disallow-exit --use-pid-file=no --realtime=no --high-priority=no \
  -L "module-native-protocol-unix socket=$folder/run/native auth-anonymous=1" \
  -L "module-null-sink sink_name=room rate=16000" \
  -L "module-remap-source source_name=mic master=room.monitor" >"$folder/server.log" 2>&1 &
server=$!
for _ in $(seq 100); do
  pactl info >/dev/null 2>&1 && break
  kill -0 "$server" 2>/dev/null || break
  sleep 0.1
done
if ! pactl info >/dev/null 2>&1; then
  echo "*** FAILED: the private PulseAudio does not answer. Its log:" >&2
  cat "$folder/server.log" >&2
  exit 1
fi
pactl set-default-sink room
pactl set-default-source mic

# Sound has its own clock: a machine that is busy elsewhere for a moment drops some of it, whoever plays. A fault of the
# program shows every time, so the tests may be tried again.
result=1
for try in 1 2 3; do
  if "$program" --gtest_filter='SoundServer.*'; then
    result=0
    break
  fi
  echo "*** try $try failed" >&2
  kill -0 "$server" 2>/dev/null || break
done
kill -0 "$server" 2>/dev/null || { echo "*** the server died" >&2; cat "$folder/server.log" >&2; result=1; }
PULSE_SERVER=unix:$folder/nowhere "$program" --gtest_filter='Nowhere.*' || result=1
exit $result

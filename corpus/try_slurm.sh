#!/usr/bin/env bash
# Tries the Slurm profile with the real daemons of Debian's slurm-wlm, on this machine alone:
#   corpus/try_slurm.sh FOLDER [--config FILE]
# Measures FOLDER once with the local profile and once through munged, slurmctld and slurmd, which have a configuration,
# key and spool of their own in a temporary folder; there the engine is killed when the first group is done and started
# again. Compares the tables and ends the daemons. Nothing of an installed Slurm is touched. Run by hand; installs
# slurm-wlm and munge when they are missing.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
[ $# -ge 1 ] && [ -d "$1" ] || { sed -n '2,7s/^# \{0,1\}//p' "$0" >&2; exit 2; }
folder=$(cd -- "$1" && pwd) options=("${@:2}")
export TIMEFORMAT='%R s'
export PATH=$PATH:/usr/sbin
if ! command -v slurmctld munged >/dev/null; then
  apt-get update -q
  DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends slurm-wlm munge
fi

work=$(mktemp -d /tmp/try-slurm.XXXXXX)
chmod 755 "$work"
pids=()
finish() {
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  for pid in "${pids[@]}"; do tail --pid="$pid" -f /dev/null; done
  echo "daemons ended; their logs: $work"
}
trap finish EXIT

user=$(id -un) host=$(hostname -s)
mkdir -m 755 "$work/munge" "$work/state" "$work/spool"
dd if=/dev/urandom of="$work/munge/key" bs=1024 count=1 status=none
chmod 400 "$work/munge/key"
munged --foreground --force --key-file="$work/munge/key" --socket="$work/munge/socket" --pid-file="$work/munge/pid" \
  --seed-file="$work/munge/seed" --log-file="$work/munge/log" 2>>"$work/munge/log" &
pids+=($!)

cat > "$work/slurm.conf" <<CONF
ClusterName=parlowen
SlurmctldHost=$host(127.0.0.1)
SlurmUser=$user
SlurmdUser=$user
AuthType=auth/munge
AuthInfo=socket=$work/munge/socket
CredType=cred/munge
SlurmctldPort=26817
SlurmdPort=26818
StateSaveLocation=$work/state
SlurmdSpoolDir=$work/spool
SlurmctldPidFile=$work/slurmctld.pid
SlurmdPidFile=$work/slurmd.pid
SlurmctldLogFile=$work/slurmctld.log
SlurmdLogFile=$work/slurmd.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
MpiDefault=none
ReturnToService=2
SchedulerParameters=sched_interval=1,bf_interval=5
NodeName=$host NodeAddr=127.0.0.1 CPUs=$(nproc) RealMemory=1000 State=UNKNOWN
PartitionName=all Nodes=$host Default=YES MaxTime=INFINITE State=UP
CONF
export SLURM_CONF=$work/slurm.conf
slurmctld -D 2>/dev/null & pids+=($!)
slurmd -D 2>/dev/null & pids+=($!)
for _ in $(seq 60); do
  [[ $(sinfo -h -o %T 2>/dev/null) = idle ]] && break
  sleep 1
done
sinfo --version
sinfo
[[ $(sinfo -h -o %T) = idle ]] || { tail -n 20 "$work"/slurm*.log; exit 1; }

through() {
  echo "with the profile $1:"
  time "$here/run.sh" "$folder" --profile "$1" --results "$work/$1" "${options[@]}" >"$work/$1.txt" 2>&1 ||
    { tail -n 40 "$work/$1.txt"; exit 1; }
}
through local

setsid "$here/run.sh" "$folder" --profile slurm --results "$work/slurm" "${options[@]}" >"$work/killed.txt" 2>&1 &
engine=$!
disown "$engine"
until compgen -G "$work/slurm/groups/*.csv" >/dev/null || ! kill -0 "$engine" 2>/dev/null; do sleep 0.2; done
kill -9 -- "-$engine" 2>/dev/null && echo "engine killed, groups done: $(ls "$work"/slurm/groups/*.csv | wc -l)"
tail --pid="$engine" -f /dev/null
through slurm
grep -E 'recordings, .* rows' "$work/slurm.txt"
echo "jobs that Slurm ran: $(scontrol -o show jobs | grep -c JobState=COMPLETED) completed of $(scontrol -o show jobs | grep -c JobId=)"
cmp "$work/local/corpus.csv" "$work/slurm/corpus.csv"
echo "the tables are the same, byte for byte: $(wc -l <"$work/slurm/corpus.csv") lines"

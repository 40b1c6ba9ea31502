#!/usr/bin/env bash
# How a job of Slurm is, for the engine: running, success or failed. Asked of the controller, and of the accounting when the
# controller has forgotten the job; one that nobody knows any more has failed and is started again.
job=${1%%;*}
state=$(scontrol -o show job "$job" 2>/dev/null | sed -n 's/.* JobState=\([A-Z_]*\).*/\1/p')
[ -n "$state" ] || state=$(sacct -X -n -P -o State -j "$job" 2>/dev/null | head -n 1)
if [ -z "$state" ] && ! scontrol ping 2>/dev/null | grep -q UP; then
  state=PENDING # the controller is away, not the job
fi
case "$state" in
  COMPLETED*) echo success ;;
  PENDING* | CONFIGURING* | RUNNING* | COMPLETING* | SUSPENDED* | REQUEUED* | REQUEUE_HOLD* | RESIZING* | SIGNALING* | STAGE_OUT*) echo running ;;
  *) echo failed ;;
esac

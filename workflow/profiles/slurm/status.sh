#!/bin/bash
# status.sh JOB
# Prints what Snakemake asks for: running, success or failed. Needs no
# accounting, but uses it for a job that the controller has forgotten. While the
# controller can't be reached a job counts as running.
set -u
job=${1%%;*} # "job;cluster"

state=
for _ in 1 2 3; do
  if answer=$(scontrol --oneliner show job "$job" 2>&1); then
    state=$(sed -n 's/.* JobState=\([A-Z_]*\).*/\1/p' <<<"$answer")
    break
  elif [[ $answer == *"Invalid job id"* ]]; then
    state=$(sacct -X -n -P -j "$job" -o State 2>/dev/null | head -n 1)
    state=${state%% *} # "CANCELLED by ..."
    : "${state:=UNKNOWN}"
    break
  fi
  sleep 1
done

case $state in
COMPLETED) echo success ;;
'' | PENDING | CONFIGURING | RUNNING | COMPLETING | SUSPENDED | STOPPED | \
  REQUEUED | REQUEUE_HOLD | REQUEUE_FED | RESIZING | SIGNALING | STAGE_OUT | \
  RESV_DEL_HOLD | SPECIAL_EXIT | REVOKED) echo running ;;
*) echo failed ;;
esac

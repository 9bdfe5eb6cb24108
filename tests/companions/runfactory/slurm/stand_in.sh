#!/bin/sh
# Slurm's commands, each under its own name, as far as runfactory needs them: a job runs at once on this
# machine, and what is known of it stands in a folder beside the commands.

jobs=$(dirname "$0")/jobs

state() {
  if [ -e "$jobs/$1/cancelled" ]; then echo CANCELLED
  elif [ ! -e "$jobs/$1/status" ]; then echo RUNNING
  elif [ "$(cat "$jobs/$1/status")" = 0 ]; then echo COMPLETED
  else echo FAILED
  fi
}

submit() {
  while [ "${1#--}" != "$1" ]; do
    case $1 in
      --comment=mute) exit 0 ;;
      --partition=nowhere) echo "sbatch: error: invalid partition specified: nowhere" >&2; exit 1 ;;
      --job-name=*) name=${1#*=} ;;
      --ntasks=*) export SLURM_NTASKS="${1#*=}" ;;
      --chdir=*) cd "${1#*=}" || exit 1 ;;
      --output=*) output=${1#*=} ;;
    esac
    shift
  done
  mkdir -p "$jobs"
  number=1
  while ! mkdir "$jobs/$number" 2>/dev/null; do number=$((number + 1)); done
  echo "JobName=$name NumTasks=$SLURM_NTASKS" >"$jobs/$number/shown"
  cp "$1" "$jobs/$number/script"
  shift
  setsid sh -c 'echo $$ >"$0/group"; sh "$0/script" "$@"; echo $? >"$0/status"' \
    "$jobs/$number" "$@" >"$output" 2>&1 </dev/null &
  echo "$number"
}

run_tasks() {
  rank=0
  tasks=
  while [ "$rank" -lt "$SLURM_NTASKS" ]; do
    SLURM_PROCID=$rank "$@" &
    tasks="$tasks $!"
    rank=$((rank + 1))
  done
  status=0
  for task in $tasks; do wait "$task" || status=$?; done
  exit "$status"
}

command=$(basename "$0")
for last; do :; done
case $command in
  sbatch) submit "$@" ;;
  srun) run_tasks "$@" ;;
  squeue)
    number=$(printf '%s\n' "$@" | sed -n 's/^--jobs=//p')
    if mkdir "$jobs/$number/waits" 2>/dev/null; then echo "PENDING|"; else echo "$(state "$number")|localhost"; fi ;;
  scontrol) echo "JobId=$last $(cat "$jobs/$last/shown") JobState=$(state "$last") NodeList=localhost" ;;
  scancel)
    touch "$jobs/$last/cancelled"
    kill -- "-$(cat "$jobs/$last/group")" ;;
esac

#!/bin/bash
# Runs the workflow on a cluster of its own: two nodes of Slurm on this machine,
# as root, in a temporary folder. Snakemake is killed once and called again, and
# then a node is killed while it merges; what comes out must be, byte for byte,
# what one palvor -a -l writes. All that was started is stopped at the end.
#
# Takes two or three minutes. --keep leaves the folder there.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
root=$PWD
source scripts/dependencies.sh

keep=no
if [ "${1-}" = --keep ]; then keep=yes; fi
if [ "$(id -u)" != 0 ]; then
  echo "A cluster's daemons run as root: call this as root." >&2
  exit 1
fi
install_dependencies snakemake=snakemake slurmctld=slurmctld slurmd=slurmd \
  sbatch=slurm-client munged=munge
build_preset release palvor palvor-kit
bin=$root/build/release

dir=$(mktemp -d "${TMPDIR:-/tmp}/palvor-cluster.XXXXXX")
chmod 755 "$dir" # for the user munge
# Each runs in a PID namespace, and with its first process all others end, as on
# a machine that loses its power.
declare -A running=()

stop() {
  local status=$? name
  trap - EXIT
  set +e
  for name in "${!running[@]}"; do finish "$name"; done
  if [ $status != 0 ]; then tail -n 15 "$dir"/*.log >&2; fi
  if [ $keep = yes ]; then echo "== Kept: $dir"; else rm -rf "$dir"; fi
  exit $status
}
trap stop EXIT
trap 'exit 130' INT TERM HUP

# start NAME COMMAND...
start() {
  local name=$1
  shift
  # A shell comes first, since who becomes another user outlives its parent.
  unshare --pid --fork --mount-proc --kill-child=KILL \
    bash -c '"$@" & wait $!' start "$@" >>"$dir/$name.log" 2>&1 &
  running[$name]=$!
}

# Kills all that was started by a name.
finish() {
  kill -KILL "${running[$1]}" 2>/dev/null || true
  wait "${running[$1]}" 2>/dev/null || true
  unset "running[$1]"
}

# until_true SECONDS COMMAND...
until_true() {
  local end=$((SECONDS + $1))
  shift
  until "$@" >/dev/null 2>&1; do
    if [ $SECONDS -ge $end ]; then
      echo "Waited in vain for: $*" >&2
      return 1
    fi
    sleep 0.2
  done
}

say() { echo "== $(date +%T) $*"; }

start_node() {
  start "$1" slurmd -D -N "$1" -f "$dir/slurm.conf"
}

start_cluster() {
  local host first=$((20000 + $$ % 20000)) node
  host=$(hostname -s)
  mkdir "$dir"/{munge,state,n1,n2}
  dd if=/dev/urandom of="$dir/munge/key" bs=128 count=1 status=none
  chown -R munge: "$dir/munge"
  chmod 600 "$dir/munge/key"
  cat >"$dir/slurm.conf" <<CONF
ClusterName=palvor
SlurmctldHost=$host(127.0.0.1)
SlurmctldPort=$first
AuthType=auth/munge
AuthInfo=socket=$dir/munge/socket
SlurmUser=root
StateSaveLocation=$dir/state
SlurmdSpoolDir=$dir/%n
SlurmctldPidFile=$dir/slurmctld.pid
SlurmdPidFile=$dir/slurmd-%n.pid
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
SelectType=select/cons_tres
SelectTypeParameters=CR_Core_Memory
SlurmdParameters=config_overrides
ReturnToService=2
SlurmdTimeout=10
SchedulerParameters=sched_interval=2,sched_min_interval=100000
NodeName=n1 NodeHostname=$host NodeAddr=127.0.0.1 Port=$((first + 1)) CPUs=1 RealMemory=1000
NodeName=n2 NodeHostname=$host NodeAddr=127.0.0.1 Port=$((first + 2)) CPUs=1 RealMemory=1000
PartitionName=all Nodes=n1,n2 Default=YES MaxTime=INFINITE State=UP
CONF
  export SLURM_CONF=$dir/slurm.conf
  start munged setpriv --reuid=munge --regid=munge --clear-groups \
    munged --foreground --force --socket="$dir/munge/socket" \
    --key-file="$dir/munge/key" --pid-file="$dir/munge/pid" \
    --log-file="$dir/munge/log" --seed-file="$dir/munge/seed"
  until_true 10 test -S "$dir/munge/socket"
  start slurmctld slurmctld -D -f "$dir/slurm.conf"
  until_true 20 scontrol ping
  for node in n1 n2; do start_node $node; done
  until_true 30 both_idle
  sinfo
}

both_idle() { [ "$(sinfo -h -N -t idle | wc -l)" = 2 ]; }

# Whether a job of a rule runs on a node; its number becomes that of the victim.
runs_on() {
  victim=$(squeue -h -t R -w "$1" -n "palvor-$2" -o %i | head -n 1)
  [ -n "$victim" ]
}

has_failed() { scontrol show job "$victim" | grep -q JobState=NODE_FAIL; }

# Files whose names are no friends of shells.
make_genomes() {
  local i=0 file
  mkdir -p genomes config
  "$bin/kit/palvor-kit" simulate --genomes 8 --length 400000 \
    --divergence 0.01 --seed 14 -o made
  for file in made/*; do
    mv "$file" "genomes/it's no. $((i += 1)) \"of\" \$many; {x} \`y\`.fa"
  done
  ls genomes/* >config/genomes.txt
  sed "s|^program: .*|program: $bin/kit/palvor-kit|; s|^ranges: .*|ranges: 6|" \
    "$root/config/config.yaml" >config/config.yaml
}

snakemake=(snakemake --snakefile "$root/workflow/Snakefile"
  --profile "$root/workflow/profiles/slurm" --latency-wait 10)

say "Starting a cluster of two nodes in $dir"
start_cluster
mkdir "$dir/a user's work"
cd "$dir/a user's work"
make_genomes
export CI=true # Snakemake looks after its jobs more often

say "Starting the workflow on $(wc -l <config/genomes.txt) genomes"
start first "${snakemake[@]}"
until_true 60 runs_on n1 prepare
until_true 60 compgen -G 'results/prepared/*/*.stlengths'
finish first
say "Killed Snakemake, with prepared:" results/prepared/*/*.stlengths
"${snakemake[@]}" --unlock 2>>"$dir/second.log"
start second "${snakemake[@]}"
until_true 120 runs_on n2 merge
finish n2
say "Killed node n2, which did job $victim"
until_true 60 has_failed
scontrol show job "$victim" | grep -E 'JobName|JobState'
start_node n2
wait "${running[second]}"
say "The workflow is done"
grep -E 'Resuming|Error executing|restart|100%' "$dir/second.log"
cat results/summary.tsv

say "One merge of the same genomes"
mapfile -t genomes <config/genomes.txt
"$bin/kit/palvor-kit" prepare -o once -p once "${genomes[@]}" >/dev/null
"$bin/src/palvor" once/ once -a -l -q
for kind in stpsa stlcp; do
  cmp "once/once.ST/once.$kind" \
    results/collection-array.ST/collection-array.$kind
done
"$bin/kit/palvor-kit" check results/ collection -o results/ \
  -p collection-array -z
diff once/once.ST/once.inputs.tsv results/collection.ST/collection.inputs.tsv
say "Workflow and one merge have written the same"

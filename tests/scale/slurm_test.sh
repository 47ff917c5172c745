#!/bin/sh
# slurm_test.sh BIN: the array and the Snakemake profile on a Slurm of one node, with the programs in BIN. The daemons live
# in a folder of the test and listen on the loopback address only; nothing of an installed Slurm is read.
. "$(dirname -- "$0")/support.sh"
PATH=$PATH:/usr/sbin:/sbin
need munged slurmctld slurmd sbatch gdal_translate
export HOME="$scratch" XDG_CACHE_HOME="$scratch/cache" SLURM_CONF="$scratch/slurm.conf"
node=$(hostname -s)
port=$((20000 + $$ % 10000))

stop() {
    [ ! -s "$scratch/$1.pid" ] || kill "-$2" "$(cat "$scratch/$1.pid")" 2>/dev/null || true
}
# A process that has ended but that its parent has not yet asked about still has a number.
isGone() {
    [ -s "$scratch/$1.pid" ] || return 0
    case $(ps -o stat= -p "$(cat "$scratch/$1.pid" 2>/dev/null)" 2>/dev/null) in
        '' | Z*) ;;
        *) return 1 ;;
    esac
}
cleanUp() {
    scancel --user="$(id -un)" 2>/dev/null || true
    scontrol update nodename="$node" state=drain reason=end 2>/dev/null || true
    for daemon in slurmd slurmctld munged; do
        stop $daemon TERM
        waitFor 10 isGone $daemon || stop $daemon KILL
    done
    rm -rf "$scratch"
}

# cannotStart DAEMON: skips the test with what the daemon said last.
cannotStart() { skip "$1 does not start: $(grep -iE 'error|fatal' "$scratch/$1.log" | tail -n 1)"; }
startController() { slurmctld >>"$scratch/slurmctld.log" 2>&1 && waitFor 20 isUp; }
startNode() { slurmd -N "$node" >>"$scratch/slurmd.log" 2>&1; }
isUp() { scontrol ping 2>/dev/null | grep -q 'is UP'; }
isReady() { sinfo -h -o %t 2>/dev/null | grep -qE 'idle|mix|alloc'; }

chmod 755 "$scratch"
mkdir "$scratch/state" "$scratch/spool" "$scratch/munge"
chmod 711 "$scratch/munge"
(umask 077 && head -c 1024 /dev/urandom >"$scratch/munge/key")
cat >"$SLURM_CONF" <<CONF
ClusterName=test
SlurmctldHost=$node(127.0.0.1)
SlurmctldPort=$port
SlurmdPort=$((port + 1))
SlurmUser=$(id -un)
SlurmdUser=$(id -un)
AuthType=auth/munge
AuthInfo=socket=$scratch/munge/socket
CredType=cred/munge
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_Core_Memory
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
MpiDefault=none
ReturnToService=2
KillWait=2
MessageTimeout=5
BatchStartTimeout=1
SlurmdTimeout=30
SlurmdParameters=config_overrides
CommunicationParameters=NoInAddrAny,NoCtldInAddrAny
SlurmctldPidFile=$scratch/slurmctld.pid
SlurmdPidFile=$scratch/slurmd.pid
SlurmctldLogFile=$scratch/slurmctld.log
SlurmdLogFile=$scratch/slurmd.log
StateSaveLocation=$scratch/state
SlurmdSpoolDir=$scratch/spool
NodeName=$node NodeAddr=127.0.0.1 CPUs=2 RealMemory=4096
PartitionName=all Nodes=ALL Default=YES MaxTime=INFINITE State=UP
CONF
munged --key-file="$scratch/munge/key" --socket="$scratch/munge/socket" --pid-file="$scratch/munged.pid" \
    --log-file="$scratch/munged.log" --seed-file="$scratch/munge/seed" --force >/dev/null 2>&1 || cannotStart munged
startController || cannotStart slurmctld
startNode && waitFor 20 isReady || cannotStart slurmd

makeDem
makeProgram
PATH="$scratch/bin:$PATH"
cd "$scratch"
out="o é'1"
QuvoDemBatch recipe.json "$dem" --tiles --into "$out" --tile-size 400 --plan >/dev/null

stateOf() { scontrol --oneliner show job "$1" | sed -n 's/.* JobState=\([A-Z_]*\).*/\1/p'; }
isSaved() { [ state/job_state -nt submitted ]; }
hasEnded() { [ "$(stateOf "$1")" = COMPLETED ]; }
explain() {
    squeue
    cat "$out"/.tasks/slurm-*
    fail "$1"
}

echo "An array and its join, while node and controller are killed and started again"
echo 2 >pause
jobs=$(sh "$scale/slurm/array.sh" "$out")
touch submitted
waitFor 60 atLeastTiles "$out" 2 || explain "no tiles appear"
# The controller writes what it knows some seconds later; jobs that it has not yet written are lost with it.
waitFor 20 isSaved || fail "the controller does not save its state"
stop slurmd KILL
stop slurmctld KILL
waitFor 10 isGone slurmctld || fail "the controller cannot be killed"
startController || fail "the controller does not start again"
# The controller may have forgotten that a task had ended. It asks the node about tasks that started more than the sum of
# the two timeouts ago.
sleep 8
startNode || fail "the node does not start again"
# Slurm starts a job that it has queued again two minutes later.
waitFor 300 hasEnded "${jobs#* }" || explain "the tiles are not joined"
isWhole "$out"

echo "Again: nothing is made a second time"
echo 0 >pause
tilesOf "$out" >before
jobs=$(sh "$scale/slurm/array.sh" "$out" 2)
waitFor 120 hasEnded "${jobs#* }" || explain "the tiles are not joined"
tilesOf "$out" | cmp before - || fail "finished tiles were made again"

# Slurm hands out places, not numbers of shares: an array that does not count from 0 would leave tiles out.
echo "A part of an array is refused"
job=$(sbatch --parsable --wait --array=1-2 --output=part.log "$scale/slurm/array.sh" --task "$out") && fail "it was not"
grep -q 'must be 0-n' part.log || fail "job $job failed for another reason: $(cat part.log)"

if command -v snakemake >/dev/null; then
    echo "Snakemake's profile; a job that Slurm has ended is submitted again"
    echo 'scancel "$SLURM_JOB_ID"; sleep 60' >once.3
    snakemake -s "$scale/Snakefile" --profile "$scale/slurm" --latency-wait 5 --config recipe=recipe.json dems="$dem" \
        into="p é'1" tile_size=400 tasks=5 >said 2>&1 || { cat said; fail "Snakemake fails"; }
    [ "$(scontrol --oneliner show job | grep -c 'JobName=quvodem-tile')" = 6 ] || fail "the tiles were not six jobs"
    isWhole "p é'1"
    "$scale/slurm/status.sh" 999999 | grep -qx failed || fail "a job that Slurm has forgotten does not count as failed"
    stop slurmctld KILL
    waitFor 10 isGone slurmctld
    "$scale/slurm/status.sh" 1 | grep -qx running || fail "a job counts as failed while the controller is away"
fi

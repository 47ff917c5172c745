#!/bin/sh
#SBATCH --job-name=quvodem
#SBATCH --mem=2G
#SBATCH --time=04:00:00
#SBATCH --requeue
# Makes the tiles of a plan as a Slurm array and joins them in a job that waits for it; needs no Snakemake.
#
#     QuvoDemBatch recipe.json folder --tiles --into out --plan
#     sh array.sh out [tasks [vrt|cog]]
#
# prints the numbers of the two jobs. Without the number of tasks there is one a tile, up to 1000. sbatch reads more
# options from its variables (SBATCH_PARTITION, SBATCH_ACCOUNT, SBATCH_TIMELIMIT); QuvoDemBatch is found by PATH.
# The same line again makes what is missing.
set -eu

# submit OUT [TASKS [vrt|cog]]: hands both jobs to Slurm.
submit() {
    into=$(cd -- "$1" && pwd)
    tiles=$(sed -n '1s/.*"tiles": *\([0-9][0-9]*\).*/\1/p' "$into/plan.jsonl")
    [ -n "$tiles" ] || { echo "$into/plan.jsonl is not a plan." >&2; exit 2; }
    # Slurm's own limit of an array is 1001 unless its administrator has raised it.
    tasks=${2:-$((tiles < 1000 ? tiles : 1000))}
    mkdir -p "$into/.tasks"
    # A % in a name of a log begins a pattern of sbatch's.
    log=$(printf '%s' "$into" | sed 's/%/%%/g')/.tasks
    # The test whether the program is there is made here, once, and not in a thousand jobs.
    command -v QuvoDemBatch >/dev/null || { echo "QuvoDemBatch is not in PATH." >&2; exit 2; }
    array=$(sbatch --parsable --array="0-$((tasks - 1))" --output="$log/slurm-%A_%a.log" "$0" --task "$into")
    join=$(sbatch --parsable --dependency="afterok:${array%%;*}" --kill-on-invalid-dep=yes --output="$log/slurm-%j.log" \
        "$0" --join "$into" "${3:-vrt}")
    echo "${array%%;*} ${join%%;*}"
}

# task OUT: makes the share of this job. 75 means that a disk is full or that another process makes the same tile, which
# may pass.
task() {
    if [ "$SLURM_ARRAY_TASK_MIN" != 0 ] || [ "$SLURM_ARRAY_TASK_MAX" != $((SLURM_ARRAY_TASK_COUNT - 1)) ]; then
        echo "The array must be 0-n: the share of a job follows from the number of jobs." >&2
        exit 2
    fi
    for pause in 30 60 120 0; do
        code=0
        QuvoDemBatch --tiles --into "$1" --task "$SLURM_ARRAY_TASK_ID/$SLURM_ARRAY_TASK_COUNT" --skip-done --log json || code=$?
        [ $code = 75 ] || break
        sleep $pause
    done
    exit "$code"
}

case ${1:-} in
    --task) task "$2" ;;
    --join) exec QuvoDemBatch --tiles --into "$2" --join "$3" ;;
    '' | -*) sed -n '6,13s/^# \{0,1\}//p' "$0" >&2; exit 2 ;;
    *) submit "$@" ;;
esac

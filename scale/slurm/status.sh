#!/bin/sh
# status.sh JOB: prints success, failed or running, the words that Snakemake understands.
# sacct answers where Slurm keeps accounts, for as long as it keeps them; scontrol answers everywhere, but forgets a job
# some minutes after its end.
state=$(sacct -X -n -P -o State -j "$1" 2>/dev/null | head -n 1)
if [ -z "$state" ]; then
    if answer=$(scontrol --oneliner show job "$1" 2>&1); then
        state=$(printf '%s\n' "$answer" | sed -n 's/.* JobState=\([A-Z_]*\).*/\1/p')
    else
        case $answer in
            *'Invalid job id'*) state=FORGOTTEN ;;
            # The controller is away. The job is not: it must not be started a second time.
            *) state=RUNNING ;;
        esac
    fi
fi
case $state in
    COMPLETED*) echo success ;;
    BOOT_FAIL* | CANCELLED* | DEADLINE* | FAILED* | FORGOTTEN | NODE_FAIL* | OUT_OF_MEMORY* | PREEMPTED* | TIMEOUT*) echo failed ;;
    *) echo running ;;
esac

"""Several runs onto one output at once, each with a temporary folder of its own."""

import time

from jobs import JOBS, QUICK


def twins(case, number):
    first = case.rng.choice(JOBS if number % 2 else QUICK)
    # Side files of another format, and a world file, stay beside the next product: they may be the user's own.
    candidates = [job for job in JOBS if (job.form, job.product) == (first.form, first.product)
                  and '--world-file' not in job.extra]
    jobs = [case.rng.choice(candidates) for _ in range(case.rng.choice([2, 2, 3]))]
    overwrite = case.rng.random() < 0.6
    case.note = f'{[f"{job.word} {job.form}" for job in jobs]}{" --overwrite" if overwrite else ""}'
    case.lab.lay_out(case.work)
    for run in range(len(jobs)):
        (case.root / f'tmp{run}').mkdir()
    case.remember()
    processes = []
    for run, job in enumerate(jobs):
        case.lab.reference(job)  # made before the runs begin
        processes.append((job, case.start(job.arguments(['--overwrite'] if overwrite else []),
                                          environment={'TMPDIR': str(case.root / f'tmp{run}')})))
        time.sleep(case.rng.choice([0, 0, case.rng.uniform(0, 0.6)]))
    ends = [(job, case.finish(process)) for job, process in processes]
    done = [job for job, ended in ends if ended.code == 0]
    if not done:
        case.blame('false', 'every run was refused')
    accepted = [product for job in done for product in case.lab.products(job)]
    for _, ended in ends:
        if ended.code == 0 or not done:
            case.judge(ended, accepted)
        elif ended.code < 0:
            case.blame('crashed', f'ended by signal {-ended.code}')
        elif not ended.words:
            case.blame('false', f'ended with {ended.code} without a word')

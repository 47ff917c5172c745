"""Signals at random moments: SIGTERM and SIGINT, which the program answers, and SIGKILL, which it cannot."""

import os
import signal
import subprocess
import time

from jobs import JOBS, OVERVIEWS, QUICK

STARTING = 0.15  # seconds that the program takes besides its tool


def lay_out(case, number):
    """Chooses a run and its old product. Returns the job and its arguments."""
    job = JOBS[number % len(JOBS)] if number % 3 else case.rng.choice([*QUICK, OVERVIEWS])
    case.lab.lay_out(case.work)
    replaces = case.rng.random() < 0.5
    case.remember(case.lab.reference(job, 'small')[0] if replaces else None)
    case.note = f'{job.word} {job.form} {" ".join(job.extra)}{" over an old product" if replaces else ""}'
    return job, job.arguments(['--overwrite'] if replaces else [])


def interrupt(case, job, arguments, number):
    """Starts the run and sends the signal, unless the run ends before."""
    moment = case.rng.uniform(0, case.lab.reference(job)[1] * 1.2 + STARTING)
    case.note += f', signal {int(number)} after {moment:.3f} s'
    process = case.start(arguments)
    try:
        process.wait(moment)
    except subprocess.TimeoutExpired:
        process.send_signal(number)
    return case.finish(process)


def stop(case, number):
    job, arguments = lay_out(case, number)
    sent = case.rng.choice([signal.SIGTERM, signal.SIGINT])
    case.judge(interrupt(case, job, arguments, sent), case.lab.products(job), signals=(sent,))


def kill(case, number):
    job, arguments = lay_out(case, number)
    if number % 4 == 3:
        kill_while_moving(case, job, arguments)
        return
    case.judge(interrupt(case, job, arguments, signal.SIGKILL), case.lab.products(job), signals=(signal.SIGKILL,),
               sweep=False)
    if not case.faults:
        ended = case.run(job.arguments(['--overwrite']))
        if ended.code != 0:
            case.blame('false', f'the second run is refused: {ended.words}')
        case.judge(ended, case.lab.products(job)[:1])


def kill_while_moving(case, job, arguments):
    """Kills the program while it moves the product to its place. The next run, which fails for a limit to the size of
    files, puts the old product back unless the new one is whole."""
    pause = case.rng.uniform(0, 0.0002)  # seconds that moving takes, more or less
    case.note += f', killed {pause * 1e6:.0f} microseconds after it began to move the product'
    process = case.start(arguments)
    parts = []
    while process.poll() is None and not parts:
        parts = [str(part / 'names') for part in case.work.glob('.*.part-*')]
    while process.poll() is None and not os.path.exists(parts[0]):
        pass
    begin = time.monotonic()
    while time.monotonic() < begin + pause:
        pass
    process.kill()
    case.finish(process)
    ended = case.run(arguments, limits=['prlimit', '--fsize=1000'])
    case.judge(ended, case.lab.products(job), signals=(signal.SIGKILL,))

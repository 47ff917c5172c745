"""Too little room: a full disk, and a limit to the size of files."""

import subprocess

from jobs import JOBS


def lay_out(case, number):
    """Chooses a run whose product is written to a folder of its own. Returns the job and the size of its product."""
    job = JOBS[number % len(JOBS)]
    case.lab.lay_out(case.root / 'inputs')
    folder, _ = case.lab.reference(job)
    case.note = f'{job.word} {job.form} {" ".join(job.extra)}'
    return job, sum(entry.stat().st_size for entry in folder.iterdir())


def old_product(case, job):
    return case.lab.reference(job, 'small')[0] if case.rng.random() < 0.4 else None


def arguments(job):
    """The inputs stand in a folder beside the work folder."""
    texts = job.arguments(['--overwrite'], dem='../inputs/dem.tif')
    return [text.replace('=table.txt', '=../inputs/table.txt').replace('=points.g', '=../inputs/points.g')
            for text in texts]


def full_disk(case, number):
    (case.root / 'inputs').mkdir()
    job, size = lay_out(case, number)
    room = int(size * case.rng.uniform(0.1, 3) + case.rng.choice([0, 4096, 200_000]))
    case.note += f', disk of {room} bytes'
    mounted = subprocess.run(['mount', '-t', 'tmpfs', '-o', f'size={room // 4096 * 4096 + 4096}', 'none', case.work],
                             capture_output=True)
    if mounted.returncode != 0:
        case.skipped = 'no file system can be mounted here'
        return
    try:
        try:
            case.remember(old_product(case, job))
        except OSError:  # the old product does not fit
            for entry in case.work.iterdir():
                entry.unlink()
            case.old.clear()
            case.remember()
        case.judge(case.run(arguments(job)), case.lab.products(job))
    finally:
        subprocess.run(['umount', case.work], check=True)


def file_size(case, number):
    (case.root / 'inputs').mkdir()
    job, size = lay_out(case, number)
    limit = case.rng.choice([0, 1, 100, 4096, 65536, int(size * case.rng.uniform(0, 1.2))])
    case.note += f', no file larger than {limit} bytes'
    case.remember(old_product(case, job))
    case.judge(case.run(arguments(job), limits=['prlimit', f'--fsize={limit}']), case.lab.products(job))

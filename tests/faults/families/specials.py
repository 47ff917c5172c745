"""Devices, pipes and sockets in the place of files: refused or ended in time, and never replaced or removed."""

import os
import shutil
import socket
import stat
import subprocess
import time

from jobs import QUICK, Job

TIME = 15  # seconds for a run to end, or to obey SIGTERM where it waits for somebody to write into a pipe


def pipe(path):
    os.mkfifo(path)


def pipe_behind_link(path):
    os.mkfifo(f'{path}.pipe')
    os.symlink(f'{path}.pipe', path)


def unix_socket(path):
    with socket.socket(socket.AF_UNIX) as listener:
        folder = os.open(path.parent, os.O_RDONLY)  # the name of a socket is short
        try:
            listener.bind(f'/proc/self/fd/{folder}/{path.name}')
        finally:
            os.close(folder)


def device(major, minor, kind=stat.S_IFCHR):
    return lambda path: os.mknod(path, kind | 0o600, os.makedev(major, minor))


def folder_of_files(path):
    path.mkdir()
    (path / 'precious').write_text('precious')


# Devices are made in the case's own folder, so that those of the system stay out of reach.
KINDS = {'pipe': pipe, 'link to a pipe': pipe_behind_link, 'socket': unix_socket, 'folder': folder_of_files,
         'null device': device(1, 3), 'zero device': device(1, 5), 'full device': device(1, 7),
         'random device': device(1, 9), 'missing loop device': device(7, 250, stat.S_IFBLK)}
ROLES = ['output', 'input', 'points', 'table', 'recipe', 'side file', 'environment file', 'dictionary', '/vsistdin/',
         'lock', 'part folder', 'temporary folder']


def special(case, number):
    role = ROLES[number % len(ROLES)]
    kind = case.rng.choice(list(KINDS))
    job = {'points': QUICK[4], 'table': QUICK[2]}.get(role, case.rng.choice(QUICK))
    case.note = f'{job.word}: {kind} as {role}'
    case.lab.lay_out(case.work, 'small')
    arguments, path, program = place(case, job, role)
    try:
        if path:
            KINDS[kind](path)
    except OSError as problem:
        case.skipped = f'{kind}: {problem.strerror}'
        return
    case.remember()
    may_succeed = case.lab.products(job, 'small') if role in HARMLESS else []
    environment = {'TMPDIR': str(path)} if role == 'temporary folder' else {}
    case.judge(finish(case, role, case.start(arguments, program=program, environment=environment, **standard_input(case, role))),
               may_succeed, signals=(), sweep=role != 'temporary folder')


# The run does not need what stands there, or has another name for it.
HARMLESS = ('environment file', 'dictionary', 'lock', 'part folder', 'temporary folder')


def place(case, job, role):
    """The arguments, where the special file stands, and the program."""
    plain = job.arguments(['--overwrite'])
    if role == 'output':
        return plain, case.work / job.product, None
    if role == 'input':
        return job.arguments(dem='special.tif'), case.work / 'special.tif', None
    if role in ('points', 'table'):
        name = {'points': 'points.geojson', 'table': 'table.txt'}[role]
        (case.work / name).unlink()
        return plain, case.work / name, None
    if role == 'recipe':
        return ['special.json', *plain], case.work / 'special.json', None
    if role == 'side file':
        return Job('hillshade', 'ENVI', 'img').arguments(['--overwrite']), case.work / 'product.hdr', None
    if role == '/vsistdin/':
        return job.arguments(dem='/vsistdin/'), None, None
    if role == 'lock':
        return plain, case.work / f'.{job.product}.lock', None
    if role == 'part folder':
        return plain, case.work / f'.{job.product}.part-abcdef', None
    if role == 'temporary folder':
        return plain, case.root / 'logs' / 'special', None
    tree = tree_of_links(case)
    if role == 'environment file':
        (tree / 'QuvoDemToolBox_env.ini').unlink()
        return plain, tree / 'QuvoDemToolBox_env.ini', tree / 'QuvoDemBatch'
    (tree / 'MESSAGES').unlink()
    (tree / 'MESSAGES').mkdir()
    return plain, tree / 'MESSAGES' / 'geodico.an', tree / 'QuvoDemBatch'


def tree_of_links(case):
    """A copy of the batch program among links to all that stands beside it."""
    tree = case.root / 'tree'
    tree.mkdir()
    for entry in case.lab.programs.iterdir():
        if entry.name == 'QuvoDemBatch':
            shutil.copy(entry, tree)
        else:
            (tree / entry.name).symlink_to(entry)
    return tree


def standard_input(case, role):
    """For /vsistdin/: nothing, an open pipe that nobody writes into, or a DEM."""
    if role != '/vsistdin/':
        return {}
    choice = case.rng.choice(['nothing', 'open pipe', 'DEM'])
    case.note += f' ({choice})'
    return {'nothing': {}, 'open pipe': {'stdin': subprocess.PIPE}}.get(
        choice, {'stdin': open(case.work / 'dem.tif', 'rb')})


def finish(case, role, process):
    """Waits for the end. communicate() would close an open pipe, so that is waited for first."""
    try:
        process.wait(TIME)
    except subprocess.TimeoutExpired:
        case.blame('hung', f'no end within {TIME} seconds')
        process.terminate()
    return case.finish(process, TIME)

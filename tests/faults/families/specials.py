"""Devices, pipes and sockets in the place of files: refused or ended in time, and never replaced or removed."""

import os
import shutil
import socket
import stat
import subprocess

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
# Where the special file stands in the work folder; where one stands elsewhere, or nowhere, the name is empty.
ROLES = {'output': '{product}', 'input': 'special.tif', 'points': 'points.geojson', 'table': 'table.txt',
         'recipe': 'special.json', 'side file': 'product.hdr', 'lock': '.{product}.lock',
         'part folder': '.{product}.part-abcdef', '/vsistdin/': '', 'environment file': '', 'dictionary': '',
         'temporary folder': ''}
# Without it, or with another name for it, the run can make its product.
DISPENSABLE = ('environment file', 'dictionary', 'lock', 'part folder', 'temporary folder')


def special(case, number):
    role = list(ROLES)[number % len(ROLES)]
    kind = case.rng.choice(list(KINDS))
    job = {'points': QUICK[4], 'table': QUICK[2], 'side file': Job('hillshade', 'ENVI', 'img')}.get(
        role, case.rng.choice(QUICK))
    case.note = f'{job.word}: {kind} as {role}'
    case.lab.lay_out(case.work, 'small')
    arguments = {'input': job.arguments(dem='special.tif'), '/vsistdin/': job.arguments(dem='/vsistdin/'),
                 'recipe': ['special.json', *job.arguments()]}.get(role, job.arguments(['--overwrite']))
    path, how = place(case, job, role)
    try:
        if path:
            path.unlink(missing_ok=True)
            KINDS[kind](path)
    except OSError as problem:
        case.skipped = f'{kind}: {problem.strerror}'
        return
    case.remember()
    accepted = case.lab.products(job, 'small') if role in DISPENSABLE else []
    case.judge(finish(case, case.start(arguments, **how)), accepted)


def place(case, job, role):
    """Where the special file stands, and how the program is started."""
    if ROLES[role]:
        return case.work / ROLES[role].format(product=job.product), {}
    if role == '/vsistdin/':
        return None, {'stdin': standard_input(case)}
    if role == 'temporary folder':
        folder = case.root / 'logs' / 'special'
        return folder, {'environment': {'TMPDIR': str(folder)}}
    tree = tree_of_links(case)
    program = {'program': tree / 'QuvoDemBatch'}
    if role == 'environment file':
        return tree / 'QuvoDemToolBox_env.ini', program
    (tree / 'MESSAGES').unlink()
    (tree / 'MESSAGES').mkdir()
    return tree / 'MESSAGES' / 'geodico.an', program


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


def standard_input(case):
    """Nothing, an open pipe that nobody writes into, or a DEM."""
    name, source = case.rng.choice([('nothing', subprocess.DEVNULL), ('open pipe', subprocess.PIPE), ('DEM', None)])
    case.note += f' ({name})'
    return open(case.work / 'dem.tif', 'rb') if source is None else source


def finish(case, process):
    """Waits for the end before Case.finish(), which closes an open pipe."""
    try:
        process.wait(TIME)
    except subprocess.TimeoutExpired:
        case.blame('hung', f'no end within {TIME} seconds')
        process.terminate()
    return case.finish(process, TIME)

"""Broken DEMs: bytes changed, ends cut off, headers that promise more cells than the file holds."""

import subprocess

from case import digest, plain_environment
from jobs import Job

FORMS = {'tif': ['-of', 'GTiff'], 'tiled.tif': ['-of', 'GTiff', '-co', 'TILED=YES', '-co', 'COMPRESS=DEFLATE'],
         'strips.tif': ['-of', 'GTiff', '-co', 'COMPRESS=LZW'], 'png': ['-of', 'PNG', '-ot', 'UInt16', '-scale'],
         'asc': ['-of', 'AAIGrid', '-outsize', '60', '60'], 'vrt': ['-of', 'VRT'], 'bil': ['-of', 'EHdr'],
         'rst': ['-of', 'RST'], 'img': ['-of', 'HFA', '-co', 'COMPRESS=YES']}
WORDS = [Job('hillshade', 'GTiff', 'tif'), Job('slope', 'GTiff', 'tif'), Job('contour', 'GeoJSON', 'geojson'),
         Job('TPI', 'COG', 'tif')]
CEILING = ['prlimit', '--fsize=50000000', '--as=3000000000']  # no broken header fills the disk or the memory
PATIENCE = 20  # seconds; a run that takes longer must still end when it is asked to


def truncate(rng, content):
    del content[rng.randrange(len(content)):]


def change_bits(rng, content):
    for _ in range(rng.choice([1, 1, 4, 20])):
        content[rng.randrange(len(content))] ^= 1 << rng.randrange(8)


def change_head(rng, content):
    for _ in range(rng.choice([1, 2, 5])):
        content[rng.randrange(min(len(content), 400))] = rng.choice([0, 1, 127, 128, 255, rng.randrange(256)])


def clear_block(rng, content):
    begin = rng.randrange(len(content))
    content[begin:begin + rng.choice([16, 512, 4096])] = bytes(min(len(content) - begin, rng.choice([16, 512, 4096])))


def change_number(rng, content):
    """Puts another number in the place of one of a text file's."""
    digits = [index for index in range(min(len(content), 2000)) if content[index:index + 1].isdigit()]
    if digits:
        at = rng.choice(digits)
        content[at:at + 1] = rng.choice([b'9999', b'-1', b'0', b'1e9', b'nan', b'2147483648', b''])


BREAKS = [truncate, change_bits, change_head, clear_block, change_number]


def broken(case, number):
    rng, job = case.rng, case.rng.choice(WORDS)
    kind = list(FORMS)[number % len(FORMS)]
    name = f'dem.{kind}'
    subprocess.run(['gdal_translate', '-q', *FORMS[kind], case.lab.inputs / 'small.tif', name], cwd=case.work,
                   check=True)
    if kind == 'vrt':  # a VRT beside the DEM that it refers to
        case.lab.lay_out(case.work, 'small')
    files = [entry for entry in sorted(case.work.iterdir()) if entry.suffix not in ('.txt', '.geojson')]
    victim = case.work / name if rng.random() < 0.6 else rng.choice(files)
    content = bytearray(victim.read_bytes())
    change = rng.choice(BREAKS)
    change(rng, content)
    victim.write_bytes(content)
    case.note = f'{job.word} {job.form} of {name}, {change.__name__} in {victim.name}'
    made, ended_by_hand = by_hand(case, job, name, fill=1)
    # a driver may leave the cells of a broken block as it found the memory: no two runs are alike then
    steady = by_hand(case, job, name, fill=170)[0] == made
    case.remember()
    process = case.start(job.arguments(dem=name), limits=CEILING)
    try:
        process.wait(PATIENCE)
    except subprocess.TimeoutExpired:
        if ended_by_hand:
            case.blame('hung', f'no end within {PATIENCE} seconds; the tool ends by itself')
        process.terminate()
    ended = case.finish(process)
    accepted = made if steady else case.product()
    case.judge(ended, [accepted] if accepted else [])


def by_hand(case, job, name, fill):
    """What the tool makes of the DEM, None where it reports a failure; and whether it ends. `fill`: the byte that
    memory holds before the tool writes to it."""
    folder = case.root / 'logs' / f'hand{fill}'
    folder.mkdir()
    for entry in case.work.iterdir():
        (folder / entry.name).write_bytes(entry.read_bytes())
    inputs = set(folder.iterdir())
    command = job.by_hand(dem=name)[0]
    try:
        ended = subprocess.run([*CEILING, case.lab.tool(command[0]), *command[1:]], cwd=folder, capture_output=True,
                               stdin=subprocess.DEVNULL, timeout=PATIENCE,
                               env={**plain_environment(case.root / 'logs'), 'MALLOC_PERTURB_': str(fill)})
    except subprocess.TimeoutExpired:
        return None, False
    if ended.returncode < 0:  # the ceiling ended it, which the program's tools outlive: they see a write that fails
        return None, False
    if ended.returncode != 0 or b'ERROR' in ended.stderr:
        return None, True
    return {entry.name: digest(entry) for entry in folder.iterdir() if entry not in inputs}, True

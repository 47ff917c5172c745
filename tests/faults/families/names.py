"""Hostile names of the output, the input and the files that a run reads."""

import os

from jobs import QUICK

NAMES = [
    ' ', 'a b', ' leading', 'trailing ', 'été', 'e\u0301', '中文', '😀🏔', "it's", '"quoted"', '$(touch made)', '`touch made`',
    '$HOME', 'a;touch made', 'a|touch made', 'a&touch made', 'a>made', 'a\nb', 'a\tb', 'a\x1bb', 'a\\b', '-of',
    '--output', '-', '--', '%s%n', '%1', '%20', '&lt;', '<a>', '*', '?', '[a]', '{a}', '~', '!', '#a', 'a#b', 'a,b',
    'a=b', 'a:b', 'C:', '@file', 'a.b.c', '..a', 'a..', 'dem', 'x' * 196, 'é' * 98, 'x' * 250, b'\xff\xfe', b'caf\xe9',
    b'a\xc3', 'vrt:', 'NETCDF:a', 'GPKG:a', '\u202egnp', '\xa0', '\u200b', 'CON', 'a\u2028b', '\ufb01', '/vsimem',
    '/vsizip',
]


def hostile(case, number):
    name = NAMES[number % len(NAMES)] if number < len(NAMES) else case.rng.choice(NAMES)
    job = case.rng.choice(QUICK)
    roles = ['output', 'input', 'folder'] + {'color-relief': ['table'], 'intervisibility': ['points']}.get(job.word, [])
    role = case.rng.choice(roles)
    case.note = f'{job.word}: {role} {name!r}'
    name = os.fsencode(name).lstrip(b'/')
    if role == 'folder' and not move_into(case, name):
        return
    case.lab.lay_out(case.work, 'small')
    accepted = case.lab.products(job, 'small')
    texts = [os.fsencode(text) for text in job.arguments()]
    if role == 'output':
        product = name + os.fsencode('.' + job.extension)
        texts = [os.fsencode(text) for text in job.arguments(output=product)]
        accepted = [{os.fsdecode(product): value for value in accepted[0].values()}]
    elif role != 'folder':
        plain = {'input': 'dem.tif', 'table': 'table.txt', 'points': 'points.geojson'}[role]
        renamed = name + os.fsencode(os.path.splitext(plain)[1])
        if not rename(case, plain, renamed):
            return
        texts = [text.replace(plain.encode(), renamed) for text in texts]
    case.remember()
    case.judge(case.run(texts), accepted)


def rename(case, plain, renamed):
    folder = os.fsencode(case.work) + b'/'
    try:
        os.rename(folder + plain.encode(), folder + renamed)
    except OSError as problem:
        case.skipped = problem.strerror
    return not case.skipped


def move_into(case, name):
    """Gives the work folder that name."""
    folder = case.root / os.fsdecode(name)
    try:
        os.rename(case.work, folder)
    except OSError as problem:
        case.skipped = problem.strerror
        return False
    case.work = folder
    return True

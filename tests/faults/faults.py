#!/usr/bin/env python3
"""Disturbs runs of the batch program, and counts what they lose, what they leave behind and what they report falsely."""

import argparse
import os
import random
import shutil
import subprocess
import sys
import tempfile
import time
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

sys.dont_write_bytecode = True
HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))

from case import COLUMNS, Case  # noqa: E402
from families import aliases, environments, inputs, limits, names, specials, stops, twins  # noqa: E402
from jobs import Lab  # noqa: E402

FAMILIES = {
    'stop': ('SIGTERM or SIGINT at any moment', stops.stop),
    'kill': ('SIGKILL at any moment, then a second run', stops.kill),
    'disk': ('a full disk', limits.full_disk),
    'size': ('a limit to the size of files', limits.file_size),
    'alias': ('the output is a file of the input', aliases.alias),
    'special': ('devices, pipes and sockets', specials.special),
    'name': ('hostile names', names.hostile),
    'environment': ('variables of GDAL, Qt and the system', environments.disturb),
    'twin': ('several runs onto one output', twins.twins),
    'input': ('broken DEMs', inputs.broken),
}
TABLE = '<!-- The rest is written by tests/faults/faults.py --write. -->\n'


def read_arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('--programs', required=True, help='folder of QuvoDemBatch and its tools')
    parser.add_argument('--cases', type=int, default=20, help='cases of each family')
    parser.add_argument('--seed', type=int, default=random.randrange(1_000_000))
    parser.add_argument('--family', choices=FAMILIES, action='append', help='only this family; may be repeated')
    parser.add_argument('--case', type=int, help='only the case of this number')
    parser.add_argument('--jobs', type=int, default=2, help='cases at a time')
    parser.add_argument('--keep', action='store_true', help='keep the folders of faults')
    parser.add_argument('--write', type=Path, help='a document whose table is replaced')
    return parser.parse_args()


def mount_somehow():
    """Starts this program anew in a name space of its own where only that may mount a file system."""
    tried = [['unshare', '-m', 'true'], ['unshare', '-rm', 'true']]
    direct, own = (subprocess.run(command, capture_output=True).returncode == 0 for command in tried)
    if not direct and own and 'FAULTS_UNSHARED' not in os.environ:
        os.environ['FAULTS_UNSHARED'] = '1'
        os.execvp('unshare', ['unshare', '-rm', sys.executable, *sys.argv])


def run_case(lab, family, number, options):
    name = f'{family} {number}'
    case = Case(lab, lab.root / 'cases' / f'{family}-{number}', name, random.Random(f'{options.seed} {name}'))
    try:
        FAMILIES[family][1](case, options.seed + number)  # families go through their rows by this number
    finally:
        if not (case.faults and options.keep):
            shutil.rmtree(case.root, ignore_errors=True)
    return case


def report(case, options):
    for column, text in case.faults:
        print(f'{case.name}: {column}: {text}\n    {case.note}\n    again: --seed {options.seed} --family '
              f'{case.name.split()[0]} --case {case.name.split()[1]} --keep', flush=True)


def count(lab, family, options):
    """Runs the cases of a family. Returns the number of cases tried and of those with a fault of each kind."""
    numbers = range(options.cases) if options.case is None else [options.case]
    counts, skipped = Counter(), Counter()
    with ThreadPoolExecutor(options.jobs) as pool:
        for case in pool.map(lambda number: run_case(lab, family, number, options), numbers):
            report(case, options)
            if case.skipped:
                skipped[case.skipped] += 1
            else:
                counts.update({'tried', *(column for column, _ in case.faults)})
    for reason, times in skipped.items():
        print(f'{family}: {times} skipped: {reason}', flush=True)
    return counts


def table(rows):
    lines = ['| family | tried | ' + ' | '.join(COLUMNS) + ' |', '|---|' + '---:|' * (len(COLUMNS) + 1)]
    lines += [f'| {FAMILIES[family][0]} | ' + ' | '.join(str(counts[column]) for column in ('tried', *COLUMNS)) + ' |'
              for family, counts in rows]
    return '\n'.join(lines) + '\n'


def main():
    options = read_arguments()
    sys.stdout.reconfigure(errors='backslashreplace')
    mount_somehow()
    print(f'seed {options.seed}', flush=True)
    began = time.monotonic()
    root = Path(tempfile.mkdtemp(prefix='faults-'))
    try:
        lab = Lab(options.programs, root)
        rows = [(family, count(lab, family, options)) for family in options.family or FAMILIES]
    finally:
        if not options.keep:
            shutil.rmtree(root)
    version = subprocess.run(['gdalinfo', '--version'], capture_output=True, text=True).stdout.strip()
    result = table(rows) + f'\n{version}; seed {options.seed}; {time.monotonic() - began:.0f} seconds.\n'
    print('\n' + result)
    if options.write:
        head = options.write.read_text().partition(TABLE)[0]
        options.write.write_text(f'{head}{TABLE}\n{result}')
    return any(counts[column] for _, counts in rows for column in COLUMNS)


if __name__ == '__main__':
    sys.exit(main())

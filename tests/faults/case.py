"""One case: a scratch folder, the runs inside it, and what they are blamed for."""

import hashlib
import os
import re
import shutil
import signal
import stat
import subprocess
import time
from pathlib import Path
from typing import NamedTuple

COLUMNS = ('lost', 'left', 'false', 'crashed', 'hung')
LONGEST = 60  # seconds; a run that takes longer hangs
OURS = re.compile(r'\..*(\.lock|\.part-\w{6}(/.*)?)$', re.DOTALL)  # hidden files and folders of the program


class Ended(NamedTuple):
    code: int  # negative: the number of the signal that ended the program
    words: str  # its standard error


def digest(path):
    """What a path holds, in words that differ when the content does. Opens regular files only."""
    status = os.lstat(path)
    if stat.S_ISLNK(status.st_mode):
        return f'link to {os.readlink(path)}'
    if stat.S_ISDIR(status.st_mode):
        return 'folder'
    if not stat.S_ISREG(status.st_mode):
        return f'special {status.st_mode} {status.st_rdev}'
    content = bytearray(Path(path).read_bytes())
    if os.fspath(path).endswith('.dbf'):
        content[1:4] = b''  # the day of the last change
    return hashlib.sha1(content).hexdigest()


def holds(folder):
    """{path inside the folder: digest} of all that a folder holds."""
    found = {}
    for base, folders, files in os.walk(folder):
        for name in folders + files:
            path = os.path.join(base, name)
            found[os.path.relpath(path, folder)] = digest(path)
    return found


def plain_environment(folder):
    """An environment without variables of GDAL, with folders of its own; fixed dates make products comparable."""
    environment = {name: value for name, value in os.environ.items()
                   if not name.startswith(('GDAL_', 'OGR_', 'CPL_', 'GTIFF_', 'LC_', 'QT_', 'XDG_', 'QUVO_'))}
    for name in ('tmp', 'home'):
        (Path(folder) / name).mkdir(exist_ok=True)
    (Path(folder) / 'home' / 'runtime').mkdir(mode=0o700, exist_ok=True)
    environment.update(LANG='C.UTF-8', TMPDIR=str(Path(folder) / 'tmp'), HOME=str(Path(folder) / 'home'),
                       XDG_RUNTIME_DIR=str(Path(folder) / 'home' / 'runtime'), SHAPE_ENCODING='',
                       OGR_CURRENT_DATE='2020-01-01T00:00:00.000Z')
    return environment


class Case:
    """Folders: work, with the inputs and the product; tmp, the temporary folder; home; logs, which may change."""

    def __init__(self, lab, root, name, rng):
        self.lab = lab
        self.name = name
        self.rng = rng
        self.root = Path(root)
        self.work = self.root / 'work'
        self.work.mkdir(parents=True)
        (self.root / 'logs').mkdir()
        self.environment = plain_environment(self.root)
        self.faults = []  # (column, text)
        self.note = ''  # what the case does
        self.skipped = ''  # why it could not be tried
        self.before = {}
        self.old = {}

    def blame(self, column, text):
        self.faults.append((column, text))

    def remember(self, product=None):
        """Keeps the state before the runs. The files of the folder `product` are copied as the product that stands in
        the place of the new one."""
        for entry in sorted(product.iterdir()) if product else ():
            shutil.copy(entry, self.work)
            self.old[entry.name] = digest(entry)
        self.before = {path: value for path, value in self._state().items() if self._name(path) not in self.old}

    def _name(self, path):
        """A path inside the case, relative to the work folder."""
        return os.path.relpath(path, self.work.relative_to(self.root))

    def _state(self):
        return {path: value for path, value in holds(self.root).items() if not path.startswith('logs')}

    def start(self, arguments, limits=(), environment=None, program=None, **how):
        """Starts the batch program in the work folder. `limits`: a command that starts it, such as prlimit."""
        how = {'stdin': subprocess.DEVNULL, 'cwd': self.work, **how}
        return subprocess.Popen([*limits, program or self.lab.batch, *arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                env={**self.environment, **(environment or {})}, start_new_session=True, **how)

    def finish(self, process, seconds=LONGEST):
        """Waits for the end of a run and of all that it started."""
        try:
            _, words = process.communicate(timeout=seconds)
        except subprocess.TimeoutExpired:
            self.blame('hung', f'no end within {seconds} seconds')
            process.kill()
            _, words = process.communicate()
        for _ in range(40):
            alive = members(process.pid)
            if not alive:
                break
            time.sleep(0.05)
        for survivor in alive:
            self.blame('left', f'process {survivor} outlives the program')
            os.kill(survivor, signal.SIGKILL)
        return Ended(process.returncode, words.decode(errors='replace').strip())

    def run(self, arguments, **how):
        return self.finish(self.start(arguments, **how))

    def product(self):
        """What stands in the product's place."""
        return {name: value for name, value in holds(self.work).items()
                if os.path.join(self.work.relative_to(self.root), name) not in self.before and not OURS.match(name)}

    def judge(self, ended, accepted, signals=(), sweep=True):
        """Blames a run. accepted: the products that it may make, none where it has to fail. signals: those that the
        case sent. sweep: nothing else may be left."""
        now, product = self._state(), self.product()
        for path, value in self.before.items():
            if now.get(path) != value:
                self.blame('lost', f'{path} has {"changed" if path in now else "gone"}')
        for path in now if sweep and not self.faults else ():
            if path not in self.before and self._name(path) not in product:
                self.blame('left', path)
        if any(column == 'hung' for column, _ in self.faults):
            return  # the case has killed it
        if ended.code < 0 and -ended.code not in signals:
            self.blame('crashed', f'ended by signal {-ended.code}')
        is_new = product in accepted
        if ended.code == 0 and not is_new:
            self.blame('false', f'ended with 0 beside {describe(product, accepted)}')
        elif ended.code != 0 and product != self.old and not (is_new and signals):
            column = 'lost' if any(product.get(name) != value for name, value in self.old.items()) else 'false'
            self.blame(column, f'ended with {ended.code} beside {describe(product, accepted)}')
        if ended.code > 0 and not ended.words:
            self.blame('false', f'ended with {ended.code} without a word')


def describe(product, accepted):
    """The difference between a product and the most similar one that was expected."""
    if not product:
        return 'no product'
    differences = [sorted([f'a different {name}' for name in product if name in one and product[name] != one[name]]
                          + [f'an unexpected {name}' for name in product if name not in one]
                          + [f'no {name}' for name in one if name not in product]) for one in accepted or [{}]]
    return ', '.join(min(differences, key=len)) or 'a whole product'


def members(session):
    """Numbers of the processes of a session that have not ended."""
    alive = []
    for folder in Path('/proc').iterdir():
        if not folder.name.isdigit():
            continue
        try:
            fields = (folder / 'stat').read_text(errors='replace').rpartition(')')[2].split()
        except OSError:  # it has ended
            continue
        if int(fields[3]) == session and fields[0] not in 'ZX':
            alive.append(int(folder.name))
    return alive

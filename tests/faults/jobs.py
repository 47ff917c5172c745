"""The runs that the families disturb, and the products that the same tools make when they are called by hand."""

import math
import shutil
import subprocess
import tempfile
import threading
import time
from pathlib import Path
from typing import NamedTuple

from case import digest, plain_environment


BUILD_OVERVIEWS = '--build-overviews'


class Job(NamedTuple):
    word: str  # the process, or BUILD_OVERVIEWS for those of the DEM itself
    form: str  # GDAL's short name of the format
    extension: str
    extra: tuple = ()  # further arguments of the batch program

    @property
    def product(self):
        return 'dem.tif.ovr' if self.word == BUILD_OVERVIEWS else f'product.{self.extension}'

    def arguments(self, more=(), dem='dem.tif', output=None):
        """Arguments of the batch program, for the files of a case's work folder."""
        if self.word == BUILD_OVERVIEWS:
            return [BUILD_OVERVIEWS, dem]
        return ['--process', self.word, '--input', dem, '--output', output or self.product, '--of', self.form,
                *OPTIONS.get(self.word, ()), *self.extra, *more]

    def by_hand(self, dem='dem.tif', output=None):
        """The commands that make the same product without the batch program."""
        output = output or self.product
        build_overviews = ['gdaladdo', '-q', '-ro', '-r', 'nearest']
        if self.word == BUILD_OVERVIEWS:
            return [[*build_overviews, dem, '2', '4']]
        if self.word == 'contour':
            return [['gdal_contour.exe', '-b', '1', '-f', self.form, '-a', 'Z', '-i', '100', '-nln', 'contour', dem,
                     output]]
        creation = []
        if '--tiled' in self.extra:
            creation += ['-co', 'TILED=YES']
        if '--world-file' in self.extra:
            creation += ['-co', 'TFW=YES']
        table = ['table.txt'] if self.word == 'color-relief' else []
        commands = [['gdal_dem.exe', self.word, dem, *table, output, *HAND[self.word].split(), '-b', '1', '-of',
                     self.form, *creation]]
        if '--overviews' in self.extra:
            commands.append([*build_overviews, output, '2', '4'])
        return commands


OPTIONS = {
    'color-relief': ('--set', 'table=table.txt'),
    'contour': ('--set', 'interval=100'),
    'intervisibility': ('--set', 'points=points.geojson', '--set', 'height=20'),
}
HAND = {
    'hillshade': '-z 1 -s 1 -az -45 -alt 45',
    'slope': '-compute_edges -s 1',
    'aspect': '-zero_for_flat -compute_edges',
    'TRI': '-compute_edges',
    'TPI': '-compute_edges',
    'roughness': '-compute_edges',
    'color-relief': '',
}
BYTES = [('GTiff', 'tif'), ('ENVI', 'img'), ('EHdr', 'bil'), ('RST', 'rst'), ('SAGA', 'sdat'), ('PNG', 'png'),
         ('COG', 'tif'), ('HFA', 'img'), ('BMP', 'bmp'), ('JPEG', 'jpg'), ('AAIGrid', 'asc'), ('GIF', 'gif'),
         ('ERS', 'ers'), ('GPKG', 'gpkg')]
REALS = [('GTiff', 'tif'), ('ENVI', 'img'), ('EHdr', 'bil'), ('RST', 'rst'), ('SAGA', 'sdat'), ('HFA', 'img'),
         ('AAIGrid', 'asc'), ('ERS', 'ers'), ('COG', 'tif')]
COLOURS = [('GTiff', 'tif'), ('PNG', 'png'), ('ENVI', 'img'), ('COG', 'tif'), ('HFA', 'img'), ('BMP', 'bmp'),
           ('JPEG', 'jpg'), ('GPKG', 'gpkg')]
LINES = [('ESRI Shapefile', 'shp'), ('GeoJSON', 'geojson'), ('GPKG', 'gpkg'), ('MapInfo File', 'tab'),
         ('MapInfo File', 'mif'), ('GML', 'gml'), ('KML', 'kml'), ('FlatGeobuf', 'fgb'), ('SQLite', 'sqlite')]
WORDS = {'hillshade': BYTES, 'slope': REALS, 'aspect': REALS, 'TRI': REALS, 'TPI': REALS, 'roughness': REALS,
         'color-relief': COLOURS, 'intervisibility': [('GTiff', 'tif')], 'contour': LINES}

PLAIN = [Job(word, *form) for word, forms in WORDS.items() for form in forms]
DRESSED = [Job(word, 'GTiff', 'tif', ('--tiled', '--world-file')) for word in ('hillshade', 'TPI', 'color-relief')] \
    + [Job(word, form, extension, ('--overviews',)) for word, form, extension in
       [('hillshade', 'GTiff', 'tif'), ('hillshade', 'PNG', 'png'), ('hillshade', 'ENVI', 'img'),
        ('slope', 'GTiff', 'tif'), ('slope', 'EHdr', 'bil'), ('color-relief', 'GTiff', 'tif')]]
PART = ('--part', '20 30 150 140')
STEPPED = [Job('slope', 'GTiff', 'tif', (*PART, '--fill-distance', '20', '--fill-mask')),
           Job('hillshade', 'PNG', 'png', PART), Job('aspect', 'ENVI', 'img', PART),
           Job('contour', 'GeoJSON', 'geojson', (*PART, '--reproject', 'EPSG:3035'))]
JOBS = PLAIN + DRESSED + STEPPED
QUICK = [Job('hillshade', 'GTiff', 'tif'), Job('slope', 'GTiff', 'tif'), Job('color-relief', 'GTiff', 'tif'),
         Job('contour', 'GeoJSON', 'geojson'), Job('intervisibility', 'GTiff', 'tif')]
OVERVIEWS = Job(BUILD_OVERVIEWS, 'GTiff', 'ovr')


class Lab:
    """The programs under test, the DEMs, and the products to compare with, each made once."""

    def __init__(self, programs, root):
        self.programs = Path(programs).resolve()
        self.root = Path(root)
        self.inputs = self.root / 'inputs'
        self.inputs.mkdir(parents=True)
        self._locks = {}
        self._lock = threading.Lock()
        self._references = {}
        self._write_inputs()

    @property
    def batch(self):
        return str(self.programs / 'QuvoDemBatch')

    def tool(self, name):
        beside = self.programs / name
        return str(beside) if beside.exists() else name

    def _write_inputs(self):
        side = 150
        heights = [[1500 + 700 * math.sin(x / 9) * math.cos(y / 13) + 300 * math.sin(x * y / 700)
                    for x in range(side)] for y in range(side)]
        grid = self.inputs / 'grid.asc'
        grid.write_text(f'ncols {side}\nnrows {side}\nxllcorner 500000\nyllcorner 5075000\ncellsize 166\n'
                        + '\n'.join(' '.join(f'{height:.2f}' for height in row) for row in heights) + '\n')
        for name, cells in (('large', 1000), ('small', 200)):
            subprocess.run(['gdal_translate', '-q', '-a_srs', 'EPSG:32632', '-ot', 'Float32', '-r', 'bilinear',
                            '-outsize', str(cells), str(cells), grid, self.inputs / f'{name}.tif'], check=True)
        (self.inputs / 'table.txt').write_text('nv 0 0 0 0\n500 0 90 0\n1500 200 200 0\n2600 255 255 255\n')
        places = ','.join('{"type":"Feature","properties":{},"geometry":{"type":"Point","coordinates":[%s]}}' % place
                          for place in ('9.1,45.95', '9.2,45.9'))
        (self.inputs / 'points.geojson').write_text('{"type":"FeatureCollection","features":[%s]}' % places)

    def lay_out(self, folder, dem='large'):
        """Copies what every job reads into a folder."""
        shutil.copy(self.inputs / f'{dem}.tif', folder / 'dem.tif')
        for name in ('table.txt', 'points.geojson'):
            shutil.copy(self.inputs / name, folder / name)

    def make_by_hand(self, job, folder, environment, **names):
        """Makes the product in a folder that holds the inputs; returns whether the tools reported no failure."""
        for command in job.by_hand(**names):
            ended = subprocess.run([self.tool(command[0]), *command[1:]], cwd=folder, env=environment,
                                   stdin=subprocess.DEVNULL, capture_output=True)
            if ended.returncode != 0 or b'ERROR' in ended.stderr:
                return False
        return True

    def reference(self, job, dem='large'):
        """The folder of the job's product, and the seconds that it took."""
        with self._lock:
            lock = self._locks.setdefault((job, dem), threading.Lock())
        with lock:
            if (job, dem) not in self._references:
                self._references[job, dem] = self._make_reference(job, dem)
        return self._references[job, dem]

    def _make_reference(self, job, dem):
        folder = Path(tempfile.mkdtemp(dir=self.root, prefix='product-'))
        self.lay_out(folder, dem)
        began = time.monotonic()
        # observers and the steps to a part of a DEM are made by the batch program alone
        if job.word == 'intervisibility' or '--part' in job.extra:
            made = subprocess.run([self.batch, *job.arguments()], cwd=folder, env=plain_environment(folder),
                                  capture_output=True).returncode == 0
        else:
            made = self.make_by_hand(job, folder, plain_environment(folder))
        if not made:
            raise RuntimeError(f'{job} cannot be made by hand')
        seconds = time.monotonic() - began
        for name in ('dem.tif', 'table.txt', 'points.geojson'):
            (folder / name).unlink()
        for name in [entry.name for entry in folder.iterdir() if entry.is_dir()]:
            shutil.rmtree(folder / name)
        return folder, seconds

    def products(self, job, dem='large'):
        """What may stand in the place of the job's product: {name: digest}, without its overviews, too."""
        folder, _ = self.reference(job, dem)
        return with_and_without_overviews({entry.name: digest(entry) for entry in folder.iterdir()})


def with_and_without_overviews(product):
    """A product is whole without its overviews, too: a run that is stopped may lack them."""
    bare = {name: value for name, value in product.items() if not name.endswith('.ovr')}
    return [product, bare] if bare and bare != product else [product]

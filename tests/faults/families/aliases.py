"""Outputs that are a file of the input under another name: refused, whatever --overwrite says."""

import os
import shutil
import subprocess
import zipfile

from jobs import QUICK, Job

VRT = ('<VRTDataset rasterXSize="200" rasterYSize="200"><VRTRasterBand dataType="Float32" band="1"><SimpleSource>'
       '<SourceFilename relativeToVRT="1">{}</SourceFilename></SimpleSource></VRTRasterBand></VRTDataset>')


def translated(case, name, *how):
    subprocess.run(['gdal_translate', '-q', *how, case.work / 'dem.tif', case.work / name], check=True)
    return name


def written(case, name, text):
    (case.work / name).write_text(text)
    return name


def linked(case, name, target='dem.tif', make=os.symlink):
    make(target if make is os.symlink else case.work / target, case.work / name)
    return name


def folder_link(case):
    (case.work / 'inner').symlink_to('.')
    return 'inner/dem.tif'


def zipped(case):
    with zipfile.ZipFile(case.work / 'dem.zip', 'w') as archive:
        archive.write(case.work / 'dem.tif', 'dem.tif')
    return '/vsizip/dem.zip/dem.tif'


def overviews(case):
    subprocess.run(['gdaladdo', '-q', '-ro', case.work / 'dem.tif', '2'], check=True)
    return 'dem.tif.ovr'


# Each row: the input, the output and further arguments; functions receive the case.
ROWS = {
    'the same name': ('dem.tif', 'dem.tif'),
    './': ('dem.tif', './dem.tif'),
    '..': ('dem.tif', '../work/dem.tif'),
    'double slash': ('dem.tif', lambda case: f'{case.work}//dem.tif'),
    'no extension': ('dem.tif', 'dem'),
    'symbolic link': ('dem.tif', lambda case: linked(case, 'product.tif')),
    'link to a link': ('dem.tif', lambda case: linked(case, 'b.tif', linked(case, 'a.tif'))),
    'hard link': ('dem.tif', lambda case: linked(case, 'product.tif', make=os.link)),
    'linked input': (lambda case: linked(case, 'in.tif'), 'dem.tif'),
    'linked folder': ('dem.tif', folder_link),
    'input of a linked folder': (folder_link, 'dem.tif'),
    'GTIFF_DIR': ('GTIFF_DIR:1:dem.tif', 'dem.tif'),
    'GTIFF_DIR, absolute': (lambda case: f'GTIFF_DIR:1:{case.work}/dem.tif', 'dem.tif'),
    'GTIFF_RAW': ('GTIFF_RAW:dem.tif', 'dem.tif'),
    'NETCDF': (lambda case: f'NETCDF:{translated(case, "dem.nc", "-of", "netCDF")}:Band1', 'dem.nc', '--of', 'netCDF'),
    'NETCDF, quoted': (lambda case: f'NETCDF:"{case.work}/{translated(case, "dem.nc", "-of", "netCDF")}":Band1',
                       'dem.nc', '--of', 'netCDF'),
    'GPKG': (lambda case: f'GPKG:{translated(case, "dem.gpkg", "-of", "GPKG")}:dem', 'dem.gpkg', '--of', 'GPKG'),
    'GPKG lines': (lambda case: translated(case, 'dem.gpkg', '-of', 'GPKG'), 'dem.gpkg'),
    'vrt://': ('vrt://dem.tif?bands=1', 'dem.tif'),
    'vrt://, absolute': (lambda case: f'vrt://{case.work}/dem.tif', 'dem.tif'),
    "a VRT's source": (lambda case: written(case, 'dem.vrt', VRT.format('dem.tif')), 'dem.tif'),
    "a nested VRT's source": (lambda case: written(case, 'outer.vrt', VRT.format(
        written(case, 'inner.vrt', VRT.format('dem.tif')))), 'dem.tif'),
    'a VRT as text': (VRT.format('dem.tif').replace('relativeToVRT="1"', ''), 'dem.tif'),
    'DERIVED_SUBDATASET': ('DERIVED_SUBDATASET:LOGAMPLITUDE:dem.tif', 'dem.tif'),
    '/vsizip': (zipped, 'dem.zip', '--of', 'ENVI'),
    '/vsisubfile': (lambda case: f'/vsisubfile/0_{(case.work / "dem.tif").stat().st_size},dem.tif', 'dem.tif'),
    '/vsicached': ('/vsicached?file=dem.tif', 'dem.tif'),
    '/vsicrypt': ('/vsicrypt/dem.tif', 'dem.tif'),
    'overviews': ('dem.tif', overviews, '--of', 'ENVI'),
    'statistics': ('dem.tif', lambda case: written(case, 'dem.tif.aux.xml', '<PAMDataset></PAMDataset>'), '--of',
                   'ENVI'),
    'world file': (lambda case: translated(case, 'dem.png', '-of', 'PNG', '-ot', 'Byte', '-co', 'WORLDFILE=YES'),
                   'dem.wld', '--of', 'ENVI'),
    'projection': (lambda case: translated(case, 'grid.asc', '-of', 'AAIGrid'), 'grid.prj', '--of', 'ENVI'),
    'header': (lambda case: translated(case, 'dem.bil', '-of', 'EHdr'), 'dem.hdr', '--of', 'ENVI'),
    'the same base name': (lambda case: translated(case, 'dem.bil', '-of', 'EHdr'), 'dem.img', '--of', 'ENVI'),
    'world file of a twin': (lambda case: linked(case, 'twin.tiff', make=shutil.copy), 'twin.tif',
                             '--tiled', '--world-file'),
}
FILES = {
    'colour table': ('color-relief', 'table.txt', 'ENVI'), 'linked colour table': ('color-relief', 'a.img', 'ENVI'),
    'points': ('intervisibility', 'points.geojson', 'ENVI'), 'recipe': ('recipe', 'recipe.json', 'ENVI'),
}


def alias(case, number):
    case.lab.lay_out(case.work, 'small')
    name = case.rng.choice(list(FILES)) if number % 8 == 7 else list(ROWS)[number % len(ROWS)]
    if name in FILES:
        arguments = of_file(case, *FILES[name])
    else:
        dem, output, *more = (part(case) if callable(part) else part for part in ROWS[name])
        job = case.rng.choice([job for job in QUICK if job.form == 'GTiff'])
        arguments = Job(job.word, 'GTiff', 'tif').arguments(['--overwrite', *more], dem=dem, output=output)
    case.note = f'{name}: {" ".join(arguments)}'
    case.remember()
    case.judge(case.run(arguments), [])


def of_file(case, word, output, form):
    """A run onto another file that it reads."""
    if word == 'recipe':
        written(case, 'recipe.json', '{"format": 1, "process": "hillshade", "input": "dem.tif"}')
        return ['recipe.json', '--output', output, '--of', form, '--overwrite']
    if output == 'a.img':
        linked(case, output, 'table.txt', os.link)
    return Job(word, form, 'img').arguments(['--overwrite'], output=output)

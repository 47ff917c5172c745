"""Variables that change what GDAL's tools, Qt or the program do: the product stays the same, or the run is refused."""


from case import digest, plain_environment
from jobs import JOBS, QUICK, with_and_without_overviews

TRUNCATED = 'a DEM that ends too early'
VARIABLES = [
    {'CPL_LOG': '{logs}/log'}, {'CPL_LOG': '/no/such/folder/log'}, {'CPL_LOG_ERRORS': 'ON', 'CPL_LOG': '{logs}/log'},
    {'CPL_DEBUG': 'ON'}, {'CPL_DEBUG': 'ON', 'CPL_TIMESTAMP': 'ON'}, {'CPL_MAX_ERROR_REPORTS': '0'},
    {'CPL_MAX_ERROR_REPORTS': '1'}, {'CPL_ACCUM_ERROR_MSG': 'ON'}, {'CPL_ERROR_STREAM': 'x'},
    {'CPL_TMPDIR': '/no/such'}, {'CPL_VSIL_CURL_CACHE_SIZE': '0'}, {'GDAL_CACHEMAX': '1'}, {'GDAL_CACHEMAX': '1%'},
    {'GDAL_NUM_THREADS': 'ALL_CPUS'}, {'GDAL_PAM_ENABLED': 'NO'}, {'GDAL_PAM_PROXY_DIR': '{logs}'},
    {'GDAL_SKIP': 'GTiff'}, {'GDAL_SKIP': 'PNG,HFA'}, {'OGR_SKIP': 'GeoJSON'}, {'OGR_SKIP': 'ESRI Shapefile'},
    {'GDAL_DISABLE_READDIR_ON_OPEN': 'EMPTY_DIR'}, {'GDAL_DISABLE_READDIR_ON_OPEN': 'TRUE'}, {'GDAL_DATA': '/no/such'},
    {'GDAL_DRIVER_PATH': '/no/such'}, {'PROJ_LIB': '/no/such'}, {'PROJ_NETWORK': 'ON'},
    {'GDAL_FILENAME_IS_UTF8': 'NO'}, {'GDAL_TIFF_INTERNAL_MASK': 'YES'}, {'COMPRESS_OVERVIEW': 'DEFLATE'},
    {'TIFF_USE_OVR': 'YES'}, {'USE_RRD': 'YES'}, {'GDAL_TIFF_OVR_BLOCKSIZE': '512'}, {'BIGTIFF_OVERVIEW': 'YES'},
    {'GTIFF_DIRECT_IO': 'YES'}, {'GTIFF_VIRTUAL_MEM_IO': 'YES'}, {'VSI_CACHE': 'TRUE'},
    {'GDAL_GEOREF_SOURCES': 'NONE'}, {'GTIFF_IGNORE_READ_ERRORS': 'YES'}, {'GDAL_IGNORE_AXIS_MAPPING': 'YES'},
    {'OSR_DEFAULT_AXIS_MAPPING_STRATEGY': 'TRADITIONAL_GIS_ORDER'}, {'SHAPE_ENCODING': 'ISO-8859-1'},
    {'GDAL_CONFIG_FILE': '/no/such'}, {'GDAL_SWATH_SIZE': '1'}, {'GDAL_MAX_DATASET_POOL_SIZE': '2'},
    {'LC_ALL': 'de_DE.UTF-8', 'LANG': 'de_DE.UTF-8'}, {'LC_ALL': 'fr_FR.ISO-8859-1'}, {'LC_NUMERIC': 'fr_FR.UTF-8'},
    {'LC_ALL': 'C'}, {'LC_ALL': 'no_SUCH'}, {'LANG': ''}, {'QT_QPA_PLATFORM': 'xcb', 'DISPLAY': ''},
    {'QT_QPA_PLATFORM': 'no-such'}, {'QT_PLUGIN_PATH': '/no/such'}, {'QT_STYLE_OVERRIDE': 'x'},
    {'QT_SCALE_FACTOR': '-1'}, {'QT_LOGGING_RULES': '*.debug=true'}, {'QT_FATAL_WARNINGS': ''}, {'TMPDIR': '/no/such'},
    {'TMPDIR': ''}, {'HOME': ''}, {'HOME': '/no/such'}, {'XDG_CONFIG_HOME': '/no/such'}, {'PATH': ''},
    {'LUMAGRAF_HOME': '/no/such'}, {'GEOLANGUE': 'x'}, {'QUVO_BIN_HOME': '/no/such'}, {'LD_BIND_NOW': '1'},
    {'OMP_NUM_THREADS': '0'}, {'TZ': 'x'},
]


def disturb(case, number):
    chosen = [VARIABLES[number % len(VARIABLES)]]
    while case.rng.random() < 0.3:
        chosen.append(case.rng.choice(VARIABLES))
    variables = {name: value.format(logs=case.root / 'logs') for one in chosen for name, value in one.items()}
    job = case.rng.choice(QUICK + JOBS)
    truncated = case.rng.random() < 0.3
    case.note = f'{job.word} {job.form} {" ".join(job.extra)} with {variables}{", " + TRUNCATED if truncated else ""}'
    case.lab.lay_out(case.work, 'small')
    if truncated:
        with open(case.work / 'dem.tif', 'r+b') as dem:
            dem.truncate(60_000)
    accepted = [] if truncated else case.lab.products(job, 'small') + by_hand(case, job, variables)
    case.remember()
    case.judge(case.run(job.arguments(), environment=variables), accepted)


def by_hand(case, job, variables):
    """What the tools make with these variables."""
    folder = case.root / 'logs' / 'hand'
    folder.mkdir()
    case.lab.lay_out(folder, 'small')
    inputs = set(folder.iterdir())
    usual = plain_environment(case.root / 'logs')
    if job.word == 'intervisibility' or not case.lab.make_by_hand(
            job, folder, {**usual, **variables, 'PATH': usual['PATH'], 'SHAPE_ENCODING': ''}):
        return []
    return with_and_without_overviews({entry.name: digest(entry) for entry in folder.iterdir() if entry not in inputs})

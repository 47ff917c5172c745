#!/usr/bin/env python3
"""scale.py <folder of QuvoDemBatch>

Makes a shaded relief and a slope of a DEM of 12,000 x 12,000 cells in nine tiles, in turn with one plain run of the
tool, and prints the ratios of processor time (goal 1.3, at most 1.9) and, for two processes at once, of time (goal 0.7,
at most 1.0 on two free processors), and the most memory of a process (at most 600 MB). Then it plans a million tiles (at
most 20 s and 200 MB).
"""
import json
import os
import subprocess
import sys
import tempfile
import time

SIDE = 12000
ROUNDS = 3


def run(*commands):
    """Runs the commands at once. Returns seconds of the processors, seconds, and MB of the largest process, each with
    that of its children."""
    begin = time.monotonic()
    # A program between tells the resources of a command and its children apart from those of earlier ones.
    measured = ('import resource, subprocess, sys; code = subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, '
                'stderr=subprocess.DEVNULL).returncode; used = resource.getrusage(resource.RUSAGE_CHILDREN); '
                'print(code, used.ru_utime + used.ru_stime, used.ru_maxrss / 1024)')
    started = [subprocess.Popen([sys.executable, '-c', measured, *command], stdout=subprocess.PIPE, text=True)
               for command in commands]
    ended = [process.communicate()[0].split() for process in started]
    seconds = time.monotonic() - begin
    if any(code != '0' for code, _, _ in ended):
        sys.exit(f'A command failed: {commands}')
    return sum(float(used) for _, used, _ in ended), seconds, max(float(most) for _, _, most in ended)


def compare(batch, tool, dem, folder, process):
    recipe = os.path.join(folder, process + '.json')
    with open(recipe, 'w', encoding='utf-8') as file:
        json.dump({'format': 1, 'process': process, 'options': {'computeEdges': True}}, file)
    best = {}
    for number in range(ROUNDS):
        into = os.path.join(folder, f'{process}{number}')
        plain = os.path.join(folder, 'plain.tif')
        results = {'plain': run([tool, process, dem, plain, '-compute_edges', '-q']),
                   'tiles': run([batch, recipe, dem, '--tiles', '--into', into + 'one'])}
        run([batch, recipe, dem, '--tiles', '--into', into, '--plan'])
        results['two'] = run(*[[batch, '--tiles', '--into', into, '--task', f'{task}/2'] for task in (0, 1)])
        subprocess.run(['rm', '-rf', into, into + 'one', plain], check=True)
        for name, result in results.items():
            best[name] = [min(pair) for pair in zip(result, best.get(name, result))]
    (plain_cpu, plain_time, _), (cpu, _, most), (_, two_time, _) = (best[name] for name in ('plain', 'tiles', 'two'))
    print(f'{process}: {cpu / plain_cpu:.2f} x the processor time ({cpu:.1f} s against {plain_cpu:.1f} s), two processes '
          f'{two_time / plain_time:.2f} x the time ({two_time:.1f} s against {plain_time:.1f} s), {most:.0f} MB at most')


def plan_many(batch, folder):
    side = 16000
    dem = os.path.join(folder, 'empty.vrt')
    with open(dem, 'w', encoding='utf-8') as file:
        file.write(f'<VRTDataset rasterXSize="{side}" rasterYSize="{side}"><SRS>EPSG:32632</SRS>'
                   '<GeoTransform>500000,10,0,5100000,0,-10</GeoTransform>'
                   '<VRTRasterBand dataType="Float32" band="1"/></VRTDataset>')
    recipe = os.path.join(folder, 'slope.json')
    into = os.path.join(folder, 'many')
    _, seconds, most = run([batch, recipe, dem, '--tiles', '--into', into, '--tile-size', '16', '--plan', '--tasks', '1'])
    print(f'a plan of a million tiles: {seconds:.1f} s, {most:.0f} MB')


def main():
    programs = sys.argv[1]
    batch = os.path.join(programs, 'QuvoDemBatch')
    with tempfile.TemporaryDirectory() as folder:
        dem = os.path.join(folder, 'dem.tif')
        subprocess.run([os.path.join(programs, 'gdal_translate.exe'), '-q', '-outsize', str(SIDE), str(SIDE), '-r', 'cubic',
                        '-ot', 'Float32', os.path.join(programs, 'samples/sample_dem.tif'), dem], check=True)
        for process in ('hillshade', 'slope'):
            compare(batch, os.path.join(programs, 'gdal_dem.exe'), dem, folder, process)
        plan_many(batch, folder)


if __name__ == '__main__':
    main()

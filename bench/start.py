#!/usr/bin/env python3
"""start.py <QuvoDemToolBox> <bare_window>

Starts the program and a bare program of Qt and GDAL in turn and compares the times until each has shown its first
window. Goal: 1.6 at most. Set QT_QPA_PLATFORM=offscreen where there is no display.
"""
import os
import statistics
import subprocess
import sys
import tempfile
import time

ROUNDS = 15
MARK = 'the first window is shown'


def seconds(program, settings):
    """Seconds from the start of the process to its mark on standard error."""
    environment = dict(os.environ, QT_LOGGING_RULES='quvo.start.debug=true', XDG_CONFIG_HOME=settings)
    begin = time.monotonic()
    with subprocess.Popen([program], stderr=subprocess.PIPE, text=True, env=environment) as process:
        for line in process.stderr:
            if MARK in line:
                break
        else:
            sys.exit(f'{program} ended without a window')
        passed = time.monotonic() - begin
        process.kill()
    return passed


def main():
    ours, bare = sys.argv[1:3]
    with tempfile.TemporaryDirectory() as settings:
        rows = [(seconds(ours, settings), seconds(bare, settings)) for _ in range(ROUNDS + 1)][1:]
    ratio = statistics.median(our / other for our, other in rows)
    print(f'first window: {statistics.median(our for our, _ in rows) * 1000:.0f} ms, bare program '
          f'{statistics.median(other for _, other in rows) * 1000:.0f} ms, ratio {ratio:.2f} (goal 1.6)')


main()

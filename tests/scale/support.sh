# shellcheck shell=sh
# shellcheck disable=SC2034 # The tests use the variables.
# Sourced by the tests of this folder with the built tree's bin folder as $1. Makes a DEM of nine neighbouring rasters,
# and in front of QuvoDemBatch a script that notes each call. A test that ends by a signal cleans up as well.
set -eu
unset CDPATH
tree=$(cd -- "$1" && pwd)
scale=$(cd -- "$(dirname -- "$0")/../../scale" && pwd)
scratch=$(mktemp -d)
cleanUp() { rm -rf "$scratch"; }
trap cleanUp EXIT
trap 'exit 130' INT TERM HUP
fail() { echo "FAILED: $*" >&2; exit 1; }
skip() { echo "Skipped: $*"; exit 77; }
need() { for command; do command -v "$command" >/dev/null || skip "there is no $command."; done; }

# waitFor SECONDS COMMAND…: until the command succeeds.
waitFor() {
    rounds=$(($1 * 10))
    shift
    until "$@"; do
        rounds=$((rounds - 1))
        [ $rounds -gt 0 ] || return 1
        sleep 0.1
    done
}

dem="$scratch/d'été 1"
recipe="$scratch/recipe.json"
# The product is of floats: unlike a shaded relief's bytes they show the smallest difference at a seam.
makeDem() {
    mkdir "$dem"
    echo '{"format": 1, "process": "slope"}' >"$recipe"
    for row in 0 1 2; do
        for column in 0 1 2; do
            gdal_translate -q -srcwin $((400 * column)) $((400 * row)) 400 400 "$tree/samples/sample_dem.tif" \
                "$dem/$row$column.tif"
        done
    done
}

# Each task writes its process number into $calls/<task number>, takes as many seconds more as the file "pause" says, and
# executes the file "once.<task number>" once.
calls="$scratch/calls"
makeProgram() {
    mkdir "$calls" "$scratch/bin"
    cat >"$scratch/bin/QuvoDemBatch" <<SCRIPT
#!/bin/sh
task=\$(expr " \$*" : '.* --task \([0-9]*\)/' || true)
if [ -n "\$task" ]; then
    echo \$\$ >>'$calls/'\$task
    if mv '$scratch/once.'\$task '$scratch/taken.'\$task 2>/dev/null; then . '$scratch/taken.'\$task; fi
    sleep "\$(cat '$scratch/pause' 2>/dev/null || echo 0)"
fi
exec '$tree/QuvoDemBatch' "\$@"
SCRIPT
    chmod +x "$scratch/bin/QuvoDemBatch"
}

# One line a tile of the output: its name, its inode and its time, which change where the tile is made again. Unfinished
# ones have hidden names.
tilesOf() { find "$1" -mindepth 1 -name '.*' -prune -o -name '*.tif' -printf '%P %i %T@\n' | sort; }
countTiles() { tilesOf "$1" | wc -l; }
atLeastTiles() { [ -d "$1" ] && [ "$(countTiles "$1")" -ge "$2" ]; }

# isWhole OUT: the tiles, joined, are cell by cell the product of the whole DEM.
isWhole() {
    [ "$(countTiles "$1")" = 9 ] || fail "there are $(countTiles "$1") tiles, not 9"
    left=$(find "$1" -path '*/.*' -name '*.tif')
    [ -z "$left" ] || fail "unfinished tiles are left behind: $left"
    "$tree/QuvoDemBatch" "$recipe" --mosaic "$dem"/*.tif --output "$scratch/whole.tif" --overwrite >/dev/null
    for raster in "$scratch/whole.tif" "$1/slope.vrt"; do
        gdal_translate -q -of ENVI "$raster" "$scratch/cells.${raster##*.}"
        gdalinfo "$raster" | grep -E '^(Size|Origin|Pixel|.*NoData)' >"$scratch/grid.${raster##*.}"
    done
    cmp "$scratch/grid.tif" "$scratch/grid.vrt" || fail "the joined raster has another grid"
    cmp "$scratch/cells.tif" "$scratch/cells.vrt" || fail "the joined raster differs from the product of the whole DEM"
}

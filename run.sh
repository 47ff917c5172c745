#!/bin/sh
# Installs what is missing, builds the program and shows what it does: the window on the sample DEM or, where there is no
# display, a shaded relief of it.
set -eu
unset CDPATH
cd -- "$(dirname -- "$(readlink -f -- "$0")")"
. packaging/packages.sh

quvo_install_packages run
cmake --workflow --preset release

tree=build/release/bin
sample=$(pwd)/$tree/samples/sample_dem.tif
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec "$tree/QuvoDemToolBox" -startingdtm "$sample"
fi

products=build/release/products
mkdir -p "$products"
relief=$(pwd)/$products/sample_hillshade.tif
"$tree/QuvoDemBatch" --process hillshade --input "$sample" --output "$relief" --overwrite

# A product that opens and whose cells differ from one another.
gdalinfo -mm "$relief" | awk -F '[=,]' '/Computed Min\/Max/ && $2 + 0 < $3 + 0 { found = 1 } END { exit !found }' || {
    echo "The shaded relief holds no data: $relief" >&2
    exit 1
}
echo "The shaded relief: $relief"

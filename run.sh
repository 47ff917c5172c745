#!/bin/sh
# Installs what is missing, builds the program and shows what it does: the window on the sample DEM or, where there is no
# display, the product of every process from it.
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

products=$(pwd)/build/release/products
rm -rf "$products"
mkdir -p "$products"
make_product() { # <word> <file name> [argument...]
    word=$1
    file=$products/$2
    shift 2
    echo "$word:"
    "$tree/QuvoDemBatch" --process "$word" --input "$sample" --output "$file" "$@"
}
make_product hillshade hillshade.tif
make_product slope slope.tif
make_product aspect aspect.tif
make_product TRI ruggedness.tif
make_product TPI topographic_position.tif
make_product roughness roughness.tif
make_product color-relief colour_relief.tif
make_product color-relief colour_relief_viridis.tif --set table=viridis --set spread=true
printf 'id,WKT\n1,POINT(552000 5150000)\n2,POINT(563000 5143000)\n' > "$products/observers.csv"
make_product intervisibility intervisibility.tif --set "points=$products/observers.csv" --set height=30
make_product contour contour_lines.shp --set interval=100

# A product that opens and whose cells differ from one another.
for raster in "$products"/*.tif; do
    gdalinfo -mm "$raster" | awk -F '[=,]' '/Computed Min\/Max/ && $2 + 0 < $3 + 0 { found = 1 } END { exit !found }' || {
        echo "A product holds no data: $raster" >&2
        exit 1
    }
done
sheet=$products/contact_sheet.png
build/release/samples/contact_sheet "$sheet" "$products"/*.tif "$products"/*.shp
echo "The products: $products"
echo "All of them in one picture: $sheet"

#!/bin/sh
# package_test.sh CPACK BUILD VERSION: packs the build, and runs, checks, installs and removes what is in the packages. Ends
# with 77 where Debian's tools for packages are missing.
set -eu
cpack=$1
build=$2
version=$3
for tool in dpkg-deb dpkg-shlibdeps file; do
    command -v "$tool" >/dev/null || { echo "$tool is not installed"; exit 77; }
done

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
trap 'exit 130' INT TERM HUP
mkdir -m 700 "$scratch/home" "$scratch/runtime"
export HOME="$scratch/home" XDG_CONFIG_HOME="$scratch/home" XDG_RUNTIME_DIR="$scratch/runtime" QT_QPA_PLATFORM=offscreen
export LC_ALL=C.UTF-8 PATH="$PATH:/usr/sbin:/sbin"
unset DESTDIR

fail() {
    echo "$*" >&2
    exit 1
}

# present TOOL: whether the tool is installed; a check without its tool is reported.
present() {
    command -v "$1" >/dev/null || { echo "skipped, since it is not installed: $1"; return 1; }
}

# makesProduct PROGRAM TREE: the program makes a product of the sample.
makesProduct() {
    "$1" --process hillshade --input "$2/samples/sample_dem.tif" --output "$scratch/relief.tif" --overwrite >"$scratch/said" 2>&1 \
        || { cat "$scratch/said"; fail "the program made no product: $1"; }
}

echo "Packages"
umask 027 # the rights of packed files do not depend on it
"$cpack" --config "$build/CPackConfig.cmake" -B "$scratch/packages" -D CPACK_DEBIAN_COMPRESSION_TYPE=gzip >"$scratch/said" 2>&1 \
    || { cat "$scratch/said"; fail "cpack fails"; }
umask 022
deb=$(echo "$scratch"/packages/quvodemtoolbox_"$version"-1_*.deb)
archive=$(echo "$scratch"/packages/quvodemtoolbox-"$version"-*.tar.gz)
rm -rf "$scratch/packages/_CPack_Packages"

echo "The package for Debian"
case $(dpkg-deb -f "$deb" Depends) in
    *libgdal*) ;;
    *) fail "the package does not name its libraries: $(dpkg-deb -f "$deb" Depends)" ;;
esac
dpkg-deb -x "$deb" "$scratch/root"
usr=$scratch/root/usr
tree=$usr/lib/quvodemtoolbox
if "$usr/bin/QuvoDemBatch" --process hillshade --input "$tree/samples/sample_dem.tif" --output "$scratch/none.tif" 2>"$scratch/said"; then
    fail "a product without GDAL's tools"
fi
grep -q "gdal_dem.exe is a link to \"$usr/bin/gdaldem\", which does not exist" "$scratch/said" \
    || { cat "$scratch/said"; fail "the missing tool is not named"; }
for tool in gdaldem gdal_contour gdal_translate; do
    ln -s "$(command -v $tool)" "$usr/bin/$tool"
    [ -x "$(readlink -f "$tree/$(echo $tool | sed 's/gdaldem/gdal_dem/').exe")" ] || fail "no link leads to $tool"
done
makesProduct "$usr/bin/QuvoDemBatch" "$tree"
[ "$("$usr/bin/QuvoDemBatch" --version)" = "QuvoDemBatch $version" ] || fail "another version: $("$usr/bin/QuvoDemBatch" --version)"

echo "The archive"
mkdir "$scratch/n'importe où"
tar -xzf "$archive" -C "$scratch/n'importe où"
unpacked=$(echo "$scratch/n'importe où"/*)
[ "$(readlink "$unpacked/lib/quvodemtoolbox/gdal_dem.exe")" = /usr/bin/gdaldem ] || fail "the archive links to the tools of this machine"
for tool in gdal_dem.exe gdal_contour.exe gdal_translate.exe; do # the tests also run where GDAL is elsewhere
    ln -sf "$(readlink -f "$build/bin/$tool")" "$unpacked/lib/quvodemtoolbox/$tool"
done
makesProduct "$unpacked/bin/QuvoDemBatch" "$unpacked/lib/quvodemtoolbox"

echo "Manuals"
# names FILE: the options that the manual describes, one a line. The line of an option follows ".TP".
names() {
    awk 'follows { print } { follows = /^\.TP/ }' "$1" | sed 's/\\-/-/g' | grep -oE '[ "]-{1,2}[A-Za-z][A-Za-z_-]*' | tr -d ' "' | sort -u
}
"$usr/bin/QuvoDemBatch" --help | grep -oE '^ +(-[a-z], )?--?[a-z-]+' | tr -s ', ' '\n' | sed '/^$/d' >"$scratch/QuvoDemBatch"
"$tree/gdal_intervisibility.exe" --help | grep -oE '^  --?[A-Za-z_]+(, --[a-z]+)?' | tr -s ', ' '\n' | sed '/^$/d' >"$scratch/gdal_intervisibility"
printf '%s\n' -startingdtm -keep_startingdir -stylesheet >"$scratch/QuvoDemToolBox"
for program in QuvoDemToolBox QuvoDemBatch gdal_intervisibility; do
    [ "$(wc -l <"$scratch/$program")" -gt 2 ] || fail "$program --help names no options"
    for page in "$usr/share/man/man1/$program.1.gz" "$usr/share/man/fr/man1/$program.1.gz"; do
        gzip -dc "$page" >"$scratch/page"
        names "$scratch/page" >"$scratch/named"
        missing=$(sort -u "$scratch/$program" | comm -23 - "$scratch/named")
        [ -z "$missing" ] || fail "$page lacks:" $missing
        grep -q "QuvoDemToolBox $version\"" "$scratch/page" || fail "$page is not of version $version"
        if present man; then
            warnings=$(man --warnings -E UTF-8 -l -Tutf8 -Z "$scratch/page" 2>&1 >/dev/null)
            [ -z "$warnings" ] || fail "$page: $warnings"
        fi
    done
done

echo "Desktop"
if present desktop-file-validate; then
    desktop-file-validate "$usr/share/applications/QuvoDemToolBox.desktop"
fi
if present appstreamcli; then
    appstreamcli validate --no-net "$usr"/share/metainfo/*.xml
fi
grep -q "<release version=\"$version\"" "$usr"/share/metainfo/*.xml || fail "the metainfo lacks the release $version"
if present update-mime-database; then
    mkdir -p "$scratch/data/mime/packages"
    cp "$usr/share/mime/packages/quvodemtoolbox.xml" "$scratch/data/mime/packages/"
    XDG_DATA_HOME="$scratch/data" update-mime-database "$scratch/data/mime"
fi

echo "Completion"
completion=$usr/share/bash-completion/completions/QuvoDemBatch
bash -n "$completion"
# completes WORD…: the completions of the last word, on one line.
completes() {
    PATH="$usr/bin:$PATH" bash --norc -c '
        . /usr/share/bash-completion/bash_completion
        . "$0"
        compopt() { :; }
        COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMP_LINE="$*" COMP_POINT=${#COMP_LINE}
        _QuvoDemBatch "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
        echo "${COMPREPLY[*]}"' "$completion" QuvoDemBatch "$@"
}
if [ -e /usr/share/bash-completion/bash_completion ]; then
    cd "$scratch/home"
    touch "dem.tif" && mkdir folder
    echo '{ "format": 1, "process": "contour" }' >recipe.json
    while IFS='|' read -r line expected; do
        [ "$(completes $line)" = "$expected" ] || fail "\"$line\" completes to \"$(completes $line)\""
    done <<'END'
--proc|--process
--process sl|slope
--process hillshade --set co|compass= computeEdges=
recipe.json --set sh|shortestRing=
--set percent=t|true
--set table=d|dem.tif
--tiles --join v|vrt
--tiles --into f|folder
--input d|dem.tif
END
    cd "$scratch"
else
    echo "skipped, since it is not installed: bash-completion"
fi

echo "Debian's rules"
if present lintian; then
    lintian --allow-root --fail-on error,warning "$deb"
fi

echo "Installing and removing"
if [ "$(id -u)" = 0 ]; then
    admin=$scratch/system/var/lib/dpkg
    mkdir -p "$admin/info" "$admin/updates"
    touch "$admin/status"
    (cd "$scratch/system" && find . | sort) >"$scratch/before"
    dpkg --root="$scratch/system" --force-depends -i "$deb" >"$scratch/said" 2>&1 || { cat "$scratch/said"; fail "dpkg does not install it"; }
    [ -L "$scratch/system/usr/bin/QuvoDemToolBox" ] || fail "dpkg installed nothing"
    dpkg --root="$scratch/system" -P quvodemtoolbox >"$scratch/said" 2>&1 || { cat "$scratch/said"; fail "dpkg does not remove it"; }
    left=$(cd "$scratch/system" && find . -not -path './var/lib/dpkg/*' | sort | comm -13 "$scratch/before" -)
    [ -z "$left" ] || fail "left behind:" $left
else
    echo "skipped, since it needs root: installing with dpkg"
fi

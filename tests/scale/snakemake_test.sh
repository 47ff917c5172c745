#!/bin/sh
# snakemake_test.sh BIN: the Snakefile with the programs in BIN.
. "$(dirname -- "$0")/support.sh"
need snakemake gdal_translate
export HOME="$scratch" XDG_CACHE_HOME="$scratch/cache"
makeDem
makeProgram
cd "$scratch"

# make OUT ARGUMENTS…: runs Snakemake; what it says is in the file "said".
make() {
    into=$1
    shift
    snakemake -s "$scale/Snakefile" -c2 --rerun-incomplete "$@" --config recipe=recipe.json dems="d'été 1" into="$into" \
        tile_size=400 program=bin/QuvoDemBatch >said 2>&1
}

out="{o} \"d'été\" \$1"
echo "All tiles, under a name of blanks, quotes and braces; a task that ends with 75 is tried again"
echo 'exit 75' >once.4
make "$out" || { cat said; fail "Snakemake fails"; }
[ "$(wc -l <"$calls/4")" = 2 ] || fail "the task was not tried twice"
isWhole "$out"

echo "Nothing to do the second time"
rm "$calls"/*
make "$out"
[ -z "$(ls "$calls")" ] || fail "tasks ran again"

echo "A changed raster, older than the plan: four tiles see it"
tilesOf "$out" >before
gdal_translate -q -scale 0 1 0 1.1 "$dem/00.tif" new.tif
touch -d 2001-01-01 new.tif
mv new.tif "$dem/00.tif"
make "$out" || { cat said; fail "Snakemake fails"; }
tilesOf "$out" | comm -13 before - >again
[ "$(wc -l <again)" = 4 ] || { cat again; fail "not four tiles were made again"; }
isWhole "$out"

echo "A task is killed, another Snakemake comes, Snakemake is killed"
rm "$calls"/*
echo 1 >pause
snakemake -s "$scale/Snakefile" -c1 --config recipe="$recipe" dems="$dem" into=out tile_size=400 \
    program=bin/QuvoDemBatch >said.first 2>&1 &
first=$!
waitFor 60 atLeastTiles out 2 || { cat said.first; fail "no tiles appear"; }
killTask() {
    newest=$(ls -t "$calls" | head -n 1)
    kill -9 "$(tail -n 1 "$calls/$newest")" 2>/dev/null
}
waitFor 20 killTask || fail "no task runs"
! make out || fail "a second Snakemake was let in"
grep -q 'cannot be locked' said || { cat said; fail "the second Snakemake failed for another reason"; }
waitFor 60 atLeastTiles out 5 || { cat said.first; fail "the first Snakemake stopped"; }
kill -9 $first
wait $first || true
tilesOf out >before
echo 0 >pause
make out --unlock
make out || { cat said; fail "Snakemake fails"; }
[ -z "$(tilesOf out | comm -23 before -)" ] || fail "finished tiles were made again"
[ "$(wc -l <"$calls/$newest")" -ge 2 ] || fail "the killed task was not tried again"
isWhole out

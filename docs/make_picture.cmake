# cmake -D TREE= -D PAINTER= -D GUIDE= -D WORK= [-D LINE= -D PICTURE=] -P make_picture.cmake
#
# Makes a product of the sample DEM with QuvoDemBatch in WORK, and paints it into PICTURE. LINE is one of pictures.txt.
# Without a line it makes the reliefs over which some pictures are drawn.
cmake_minimum_required(VERSION 3.25)

# The parts of the sample DEM that the pictures show, in cells.
set(far "440 700 480 320")
set(near "560 800 240 160")

# Leaks of the libraries in a build with sanitizers are no concern of the pictures.
set(ENV{ASAN_OPTIONS} "detect_leaks=0")
file(MAKE_DIRECTORY "${WORK}")

function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE said ERROR_VARIABLE said)
    if(NOT result EQUAL 0)
        list(JOIN ARGV " " command)
        message(FATAL_ERROR "${command}\n${said}")
    endif()
endfunction()

function(make_product part process output)
    run("${TREE}/QuvoDemBatch" --process ${process} --input "${TREE}/samples/sample_dem.tif" --part "${${part}}"
        --output "${output}" --overwrite ${ARGN})
endfunction()

if(NOT LINE)
    make_product(near hillshade "${WORK}/relief_near.tif" --set computeEdges=true)
    make_product(far hillshade "${WORK}/relief_far.tif" --set computeEdges=true)
    return()
endif()

separate_arguments(words UNIX_COMMAND "${LINE}")
list(POP_FRONT words name process way)
set(options "")
foreach(option IN LISTS words)
    string(REPLACE "@GUIDE@" "${GUIDE}" option "${option}")
    list(APPEND options --set "${option}")
endforeach()

set(product "${WORK}/${name}.tif")
if(process STREQUAL "contour")
    set(product "${WORK}/${name}.gpkg")
    list(APPEND options --of GPKG)
endif()
set(part far)
if(way STREQUAL "near")
    set(part near)
endif()
make_product(${part} ${process} "${product}" ${options})

set(way_arguments "")
if(way MATCHES "^(over|near)$")
    set(way_arguments "${WORK}/relief_${part}.tif")
elseif(way STREQUAL "numbers")
    set(way_arguments --numbers)
elseif(way STREQUAL "classes")
    set(product "${WORK}/${name}_classes.tif")
endif()
get_filename_component(folder "${PICTURE}" DIRECTORY)
file(MAKE_DIRECTORY "${folder}")
run("${PAINTER}" "${PICTURE}" "${product}" ${way_arguments})

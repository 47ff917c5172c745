# Installs into a scratch prefix and runs the batch program there, through its link.
file(REMOVE_RECURSE "${PREFIX}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${PREFIX}" OUTPUT_QUIET RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the installation failed")
endif()
set(tree "${PREFIX}/lib/quvodemtoolbox")
foreach(name gdal_dem.exe gdal_contour.exe gdal_intervisibility.exe gdal_translate.exe libraries/colormap/dtm.txt data/gdalvrt.xsd
        scale/Snakefile scale/slurm/config.yaml scale/slurm/array.sh)
    if(NOT EXISTS "${tree}/${name}")
        message(FATAL_ERROR "missing in the installed tree: ${name}")
    endif()
endforeach()
set(product "${PREFIX}/relief.tif")
execute_process(COMMAND "${PREFIX}/bin/QuvoDemBatch" --process hillshade --input "${tree}/samples/sample_dem.tif"
                        --output "${product}" RESULT_VARIABLE result)
if(NOT result EQUAL 0 OR NOT EXISTS "${product}")
    message(FATAL_ERROR "the installed program made no product")
endif()

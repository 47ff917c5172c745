# The portable tree is one folder with the programs, the tools that they start (under the same names on every platform),
# GDAL's data and plug-in folders, the messages and the colour tables. The build creates it in ${QUVO_TREE}. The
# installation creates it in <prefix>/lib/quvodemtoolbox, with links to the programs in <prefix>/bin.

set(QUVO_INSTALL_TREE "lib/quvodemtoolbox")

# Finds GDAL's tools and folders and links them into the tree. Called once.
function(quvo_portable_tree)
    find_program(QUVO_GDALDEM gdaldem REQUIRED)
    find_program(QUVO_GDAL_CONTOUR gdal_contour REQUIRED)
    find_program(QUVO_GDAL_TRANSLATE gdal_translate REQUIRED)
    find_path(QUVO_GDAL_DATA gdalvrt.xsd PATH_SUFFIXES share/gdal gdal REQUIRED)

    get_target_property(library GDAL::GDAL LOCATION)
    get_filename_component(library_folder "${library}" DIRECTORY)

    file(MAKE_DIRECTORY "${QUVO_TREE}")
    _quvo_tree_link("${QUVO_GDALDEM}" gdal_dem.exe)
    _quvo_tree_link("${QUVO_GDAL_CONTOUR}" gdal_contour.exe)
    _quvo_tree_link("${QUVO_GDAL_TRANSLATE}" gdal_translate.exe)
    _quvo_tree_link("${QUVO_GDAL_DATA}" data)
    if(IS_DIRECTORY "${library_folder}/gdalplugins")
        _quvo_tree_link("${library_folder}/gdalplugins" driver)
    endif()
endfunction()

# Installs a link <prefix>/<path> to <target>, and names it in the list of the installed files.
function(_quvo_install_link target path)
    get_filename_component(folder "${path}" DIRECTORY)
    install(CODE "
        file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${folder}\")
        file(CREATE_LINK \"${target}\" \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${path}\" SYMBOLIC)
        list(APPEND CMAKE_INSTALL_MANIFEST_FILES \"\${CMAKE_INSTALL_PREFIX}/${path}\")
        message(STATUS \"Installing: \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${path}\")
    ")
endfunction()

# Creates a link <name> in the tree to a file or folder of the system.
function(_quvo_tree_link target name)
    file(CREATE_LINK "${target}" "${QUVO_TREE}/${name}" SYMBOLIC)
    _quvo_install_link("${target}" "${QUVO_INSTALL_TREE}/${name}")
endfunction()

# Installs a tool of this project that the programs start, into the tree only.
function(quvo_tree_tool target)
    install(TARGETS ${target} RUNTIME DESTINATION "${QUVO_INSTALL_TREE}")
endfunction()

# Installs a program of this project into the tree, with a link to it in <prefix>/bin. The program finds the tree through
# its own path with links resolved.
function(quvo_tree_program target)
    quvo_tree_tool(${target})
    _quvo_install_link("../${QUVO_INSTALL_TREE}/${target}" "bin/${target}")
endfunction()

# Copies a file of this project into the tree, beside the programs.
function(quvo_tree_file path)
    configure_file("${path}" "${QUVO_TREE}" COPYONLY)
    install(FILES "${path}" DESTINATION "${QUVO_INSTALL_TREE}")
endfunction()

# Copies the files of a folder of this project into the tree, under the same relative path or as <folder> of the tree.
function(quvo_tree_folder path)
    set(folder "${path}")
    if(ARGC GREATER 1)
        set(folder "${ARGV1}")
    endif()
    file(GLOB files RELATIVE "${PROJECT_SOURCE_DIR}/${path}" CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${path}/*")
    foreach(file IN LISTS files)
        configure_file("${PROJECT_SOURCE_DIR}/${path}/${file}" "${QUVO_TREE}/${folder}/${file}" COPYONLY)
        install(FILES "${PROJECT_SOURCE_DIR}/${path}/${file}" DESTINATION "${QUVO_INSTALL_TREE}/${folder}")
    endforeach()
endfunction()

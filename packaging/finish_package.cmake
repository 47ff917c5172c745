# Run by cpack when the files of a package are in place: what an installation by "cmake --install" does not need.
set(root "${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
set(usr "${root}")
if(CPACK_GENERATOR STREQUAL "DEB")
    set(usr "${root}/usr")
endif()

# The links in the tree lead to where GDAL is on this machine. On another one Debian's is meant.
set(tree "${usr}/${CPACK_QUVO_TREE}")
file(GLOB files LIST_DIRECTORIES TRUE "${tree}/*")
foreach(file IN LISTS files)
    if(NOT IS_SYMLINK "${file}")
        continue()
    endif()
    file(READ_SYMLINK "${file}" target)
    get_filename_component(name "${file}" NAME)
    get_filename_component(tool "${target}" NAME)
    if(name STREQUAL "data")
        set(target "share/gdal")
    elseif(name STREQUAL "driver")
        if(NOT target MATCHES "^/usr/lib/([^/]+/gdalplugins)$")
            file(REMOVE "${file}") # without the link GDAL looks in its own folder
            continue()
        endif()
        set(target "lib/${CMAKE_MATCH_1}")
    else()
        set(target "bin/${tool}")
    endif()
    if(CPACK_GENERATOR STREQUAL "DEB") # Debian's policy asks for relative links below /usr
        string(REGEX REPLACE "^lib/" "../" target "${target}")
        string(REGEX REPLACE "^(bin|share)/" "../../\\1/" target "${target}")
    else()
        set(target "/usr/${target}")
    endif()
    file(CREATE_LINK "${target}" "${file}" SYMBOLIC)
endforeach()

if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()

# Without these two, CPack only remarks that the package names no libraries.
foreach(tool dpkg-shlibdeps file)
    find_program(found_${tool} ${tool})
    if(NOT found_${tool})
        message(FATAL_ERROR "A package of Debian needs the programs dpkg-shlibdeps (package dpkg-dev) and file.")
    endif()
endforeach()

function(run_or_fail)
    execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(doc "${usr}/share/doc/${CPACK_PACKAGE_NAME}")
execute_process(COMMAND date -u -R -d "${CPACK_QUVO_RELEASE_DATE}" OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE
                COMMAND_ERROR_IS_FATAL ANY)
file(WRITE "${doc}/changelog.Debian" "${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) \
bookworm; urgency=medium

  * Release ${CPACK_PACKAGE_VERSION}; changelog.gz names what is new.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
file(RENAME "${doc}/CHANGELOG.md" "${doc}/changelog")
file(GLOB_RECURSE manuals "${usr}/share/man/*.1")
run_or_fail(gzip -9n "${doc}/changelog" "${doc}/changelog.Debian" ${manuals})

if(EXISTS "${CPACK_QUVO_OVERRIDES}")
    file(MAKE_DIRECTORY "${usr}/share/lintian/overrides")
    file(COPY_FILE "${CPACK_QUVO_OVERRIDES}" "${usr}/share/lintian/overrides/${CPACK_PACKAGE_NAME}")
endif()
# The rights of files and folders do not depend on the umask of whoever packs.
run_or_fail(chmod -R u=rwX,go=rX "${usr}")

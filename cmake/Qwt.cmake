# Finds Qwt as Quvo::Qwt: compass and wheel of the shaded relief panel, plot of the profile. It comes without a package
# file, under a name for each Qt. Debian 12 has none for Qt 6: the targets that use it are then left out.

set(required REQUIRED)
if(QUVO_QT_MAJOR EQUAL 6)
    set(required "")
endif()
find_path(QWT_INCLUDE_DIR qwt_compass.h PATH_SUFFIXES qwt qwt6 qwt-qt${QUVO_QT_MAJOR} ${required})
find_library(QWT_LIBRARY NAMES qwt-qt${QUVO_QT_MAJOR} qwt ${required})
if(QWT_INCLUDE_DIR AND QWT_LIBRARY)
    file(STRINGS "${QWT_INCLUDE_DIR}/qwt_global.h" QUVO_QWT_VERSION REGEX "define +QWT_VERSION_STR")
    string(REGEX REPLACE ".*\"(.*)\".*" "\\1" QUVO_QWT_VERSION "${QUVO_QWT_VERSION}")
    add_library(Quvo::Qwt UNKNOWN IMPORTED)
    set_target_properties(Quvo::Qwt PROPERTIES
        IMPORTED_LOCATION "${QWT_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${QWT_INCLUDE_DIR}"
    )
endif()

# Where there is no Qwt, ends the CMakeLists.txt that calls it. <targets>: what the file would add from here on.
macro(quvo_needs_qwt)
    if(NOT TARGET Quvo::Qwt)
        set_property(GLOBAL APPEND PROPERTY QUVO_WITHOUT_QWT ${ARGN})
        return()
    endif()
endmacro()

# Says which targets were left out. Called after all targets.
function(quvo_report_qwt)
    get_property(targets GLOBAL PROPERTY QUVO_WITHOUT_QWT)
    if(targets)
        list(JOIN targets " " targets)
        message(STATUS "No Qwt for Qt ${QUVO_QT_MAJOR} (QWT_INCLUDE_DIR, QWT_LIBRARY). Left out: ${targets}")
    endif()
endfunction()

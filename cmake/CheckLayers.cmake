# Who may know whom, held by the build.
#
# Included by CMakeLists.txt it gives quvo_core_target(<target>): the target may reach neither Qt Widgets nor Qwt,
# over any number of links. Run as a script (cmake -D ROOT=<sources> -P CheckLayers.cmake) it reads every source file
# and reports each include and each class that its room may not use; ctest runs it as "layers". With -D CHART=<file>
# it writes the chart of the rooms into that file instead; the target "chart" does so.

# Finds a way from the target to a library whose name matches the pattern, over any number of links; empty: there is none.
function(_quvo_reaches target pattern found)
    set(seen "${target}")
    set(rest "${target}")
    while(rest)
        list(POP_FRONT rest from)
        get_target_property(libraries ${from} LINK_LIBRARIES)
        get_target_property(interface ${from} INTERFACE_LINK_LIBRARIES)
        foreach(library IN LISTS libraries interface)
            string(REGEX REPLACE "^\\$<LINK_ONLY:(.*)>$" "\\1" library "${library}")
            if(library IN_LIST seen)
                continue()
            endif()
            list(APPEND seen "${library}")
            set(way_to_${library} "${way_to_${from}}${from} -> ")
            if(library MATCHES "${pattern}")
                set(${found} "${way_to_${library}}${library}" PARENT_SCOPE)
                return()
            elseif(TARGET "${library}" AND NOT library MATCHES "^(Quvo::|Qt[56]::|GDAL::)")
                list(APPEND rest "${library}")
            endif()
        endforeach()
    endwhile()
    set(${found} "" PARENT_SCOPE)
endfunction()

# Marks a library that works without widgets; call it after the target's target_link_libraries.
function(quvo_core_target target)
    set_target_properties(${target} PROPERTIES AUTOUIC OFF) # the forms of its folder belong to another target
    _quvo_reaches(${target} "QtWidgets|Qt[56]::Widgets|[Qq]wt" found)
    if(found)
        message(FATAL_ERROR "A target without widgets reaches them: ${found}")
    endif()
endfunction()

if(NOT CMAKE_SCRIPT_MODE_FILE)
    add_custom_target(chart COMMAND "${CMAKE_COMMAND}" -D "CHART=${PROJECT_SOURCE_DIR}/CONTRIBUTING.md" -P
                                    "${CMAKE_CURRENT_LIST_FILE}" VERBATIM)
    return()
endif()
cmake_minimum_required(VERSION 3.25)

# A room, and the rooms whose headers its files may include besides their own. A room is a folder, or a file that is
# its own room; a folder that is not listed belongs to the room above it. A header stands for itself alone.
set(layers
    "messages: "
    "vectordraw: "
    "viewshed: "
    "viewshed/sweep: viewshed"
    "viewshed/io: viewshed viewshed/sweep"
    "viewshed/main.cpp: viewshed viewshed/io"
    "colortable: messages colortable/formats/colornames.h colortable/formats/foreigntable.h colortable/formats/palettes.h"
    "colortable/formats: colortable messages"
    "dataset: messages vectordraw"
    "dataset/views: dataset messages"
    "dataset/contours: dataset dataset/views messages"
    "dataset/join: dataset dataset/contours dataset/views messages"
    "dataset/chooser: dataset messages"
    "dataset/extraction: dataset messages"
    "colortable/legend: colortable messages"
    "colortable/editor: colortable colortable/formats/tableexport.h colortable/legend dataset messages"
    "runner: messages dataset/pathencoding.h"
    "panels/options: colortable dataset messages runner/commandsplit.h runner/quoting.h"
    "panels/controls: colortable colortable/editor messages"
    "panels/observers: panels/options panels/controls dataset dataset/chooser messages"
    "panels/colors: panels/options panels/controls colortable colortable/editor dataset messages"
    "panels/contours: panels/options panels/controls dataset/contours messages"
    "panels/light: panels/options panels/controls dataset messages"
    "panels: panels/options panels/controls panels/colors panels/contours panels/light panels/observers colortable colortable/editor dataset messages runner/QuvoProgressDialog.h"
    "app/startup: dataset messages"
    "app/process: panels/options runner dataset dataset/views messages"
    "app/recipe: app/process panels/options colortable dataset dataset/views messages"
    "app/run: app/process app/recipe panels/options runner dataset dataset/views messages"
    "app/tiles: app/run dataset/extraction dataset/join app/startup app/process app/recipe panels/options colortable dataset dataset/views messages"
    "app/preview/map: app/preview/previewgeometry.h panels/options colortable dataset dataset/contours messages"
    "app/preview/live: viewshed viewshed/sweep viewshed/io panels/options dataset"
    "app/preview/profile: app/preview/live viewshed panels/options dataset messages"
    "app/preview: app/preview/map app/preview/live app/preview/profile app/process colortable panels panels/options runner dataset dataset/views messages viewshed/lineofsight.h viewshed/problem.h"
    "app/series: app/process app/recipe app/run panels/options runner dataset dataset/chooser dataset/views messages"
    "app/window/input: app/startup app/process app/series panels panels/options dataset dataset/chooser dataset/extraction dataset/views messages"
    "app/window/dialogs: app/startup panels panels/light panels/options runner messages"
    "app/window/launch: app/process app/recipe app/run app/preview panels panels/options runner dataset messages"
    "app/window: app/window/dialogs app/window/launch app/tiles app/startup app/process app/recipe app/run app/preview app/window/input panels panels/controls/focusorder.h panels/light panels/options runner dataset dataset/views messages"
    "app/batch: dataset/contours dataset/join app/tiles app/startup app/process app/recipe app/run panels/options runner dataset dataset/views messages"
    "app/main.cpp: app/startup app/process app/window dataset messages"
    "resources: "
    "samples: dataset vectordraw"
    "bench: app/process app/preview app/preview/live app/preview/profile app/window panels panels/options viewshed viewshed/sweep viewshed/io runner dataset vectordraw"
)

# Text that may stand only in some files: a pattern, and a pattern of those files.
set(rules
    "QProcess[^a-zA-Z]|<QProcess>" "^(runner|bench)/"
    "QMessageBox" "^messages/Prompt"
    "QFileDialog" "^dataset/QuvoFilerDialog"
    "QSettings" "^app/startup/(settings|environment)"
    "<QtWidgets/" "^$"
    "<[Qq]wt|Qwt[A-Z]" "^(panels/shadedOptionsWidget|panels/controls/CompassDial|app/preview/profile/)"
    "qgetenv|getenv *\\(|qEnvironmentVariable" "^(app/startup/environment|messages/dico|.*/main\\.cpp)"
)

# Text that must not stand in some files: a pattern of the files, and the pattern of the text.
set(bans
    "^viewshed/" "#include *<Q"
    "^(viewshed/(sweep/|([^/m]|m[^a])[^/]*$)|vectordraw/(stylestring|geometry))" "#include *<(gdal|ogr|cpl|cairo|pango)"
)

set(rooms "")
foreach(layer IN LISTS layers)
    string(REGEX MATCH "^([^:]*): *(.*)$" matched "${layer}")
    list(APPEND rooms "${CMAKE_MATCH_1}")
    string(REPLACE " " ";" "knows_${CMAKE_MATCH_1}" "${CMAKE_MATCH_2}")
endforeach()

# The room of a file or header, found upwards from its path; empty: it belongs to none.
function(room_of path found)
    while(path AND NOT path IN_LIST rooms)
        if(path MATCHES "/")
            string(REGEX REPLACE "/[^/]*$" "" path "${path}")
        else()
            set(path "")
        endif()
    endwhile()
    set(${found} "${path}" PARENT_SCOPE)
endfunction()

# The rooms as a Mermaid flow chart. An arrow that other arrows imply is left out.
function(rooms_chart found)
    set(lines "flowchart TD")
    foreach(room IN LISTS rooms)
        if(room MATCHES "\\.cpp$|^(samples|bench|resources)$")
            continue()
        endif()
        string(REPLACE "/" "_" from "${room}")
        string(APPEND lines "\n    ${from}[${room}]")
        set(implied "")
        foreach(known IN LISTS knows_${room})
            list(APPEND implied ${knows_${known}})
        endforeach()
        foreach(known IN LISTS knows_${room})
            if(NOT known IN_LIST implied AND NOT known MATCHES "\\.h$")
                string(REPLACE "/" "_" to "${known}")
                string(APPEND lines "\n    ${from} --> ${to}")
            endif()
        endforeach()
    endforeach()
    set(${found} "${lines}" PARENT_SCOPE)
endfunction()

if(CHART) # the text between the markers of that file is replaced by the chart
    rooms_chart(chart)
    file(READ "${CHART}" text)
    string(REGEX REPLACE "```mermaid\n[^`]*```" "```mermaid\n${chart}\n```" text "${text}")
    file(WRITE "${CHART}" "${text}")
    return()
endif()

set(problems "")
file(GLOB_RECURSE files RELATIVE "${ROOT}" "${ROOT}/[a-z]*/*.h" "${ROOT}/[a-z]*/*.cpp" "${ROOT}/[a-z]*/*.c")
list(FILTER files EXCLUDE REGEX "^(build|tests)/")
foreach(file IN LISTS files)
    room_of("${file}" room)
    if(NOT room)
        list(APPEND problems "${file} stands in no room")
        continue()
    endif()
    file(STRINGS "${ROOT}/${file}" includes REGEX "^ *#include *\"")
    foreach(line IN LISTS includes)
        string(REGEX REPLACE "^ *#include *\"([^\"]*)\".*" "\\1" header "${line}")
        room_of("${header}" other)
        if(NOT header MATCHES "/") # a generated header (ui_….h, ….moc)
            continue()
        endif()
        if(NOT other STREQUAL room AND NOT other IN_LIST knows_${room} AND NOT header IN_LIST knows_${room})
            list(APPEND problems "${file} includes ${header}, which ${room} may not know")
        endif()
        # A panel knows itself and the base class, and no other panel.
        string(REGEX REPLACE "\\.[a-z]+$" "" stem "${file}")
        if(room STREQUAL "panels" AND other STREQUAL "panels"
           AND NOT header STREQUAL "${stem}.h" AND NOT header STREQUAL "panels/optionsWidget.h")
            list(APPEND problems "${file} includes ${header}, another panel")
        endif()
    endforeach()

    file(READ "${ROOT}/${file}" text)
    string(REGEX REPLACE "//[^\n]*" "" text "${text}")
    set(rest ${rules})
    while(rest)
        list(POP_FRONT rest pattern where)
        if(text MATCHES "${pattern}" AND NOT file MATCHES "${where}")
            list(APPEND problems "${file} uses ${CMAKE_MATCH_0}, which stands only in files like ${where}")
        endif()
    endwhile()
    set(rest ${bans})
    while(rest)
        list(POP_FRONT rest where pattern)
        if(file MATCHES "${where}" AND text MATCHES "${pattern}")
            list(APPEND problems "${file} uses ${CMAKE_MATCH_0}, which must not stand in files like ${where}")
        endif()
    endwhile()
endforeach()

# No room grows into a heap.
set(most_files 40)
foreach(room IN LISTS rooms)
    file(GLOB here LIST_DIRECTORIES FALSE "${ROOT}/${room}/*")
    list(LENGTH here count)
    if(count GREATER most_files)
        list(APPEND problems "${room} holds ${count} files; ${most_files} are the most")
    endif()
endforeach()

# The chart of the rooms in CONTRIBUTING.md is the one of the table above.
if(EXISTS "${ROOT}/CONTRIBUTING.md")
    rooms_chart(chart)
    file(READ "${ROOT}/CONTRIBUTING.md" text)
    string(FIND "${text}" "${chart}" at)
    if(at EQUAL -1)
        list(APPEND problems "CONTRIBUTING.md does not show these rooms: build the target 'chart'")
    endif()
endif()

if(problems)
    list(JOIN problems "\n  " problems)
    message(FATAL_ERROR "Layers:\n  ${problems}")
endif()
message(STATUS "Layers: no file reaches where it may not.")

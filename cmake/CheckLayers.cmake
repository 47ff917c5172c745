# Who may know whom, held by the build.
#
# Included by CMakeLists.txt it gives quvo_core_target(<target>): the target may reach neither Qt Widgets nor Qwt,
# over any number of links. Run as a script (cmake -D ROOT=<sources> -P CheckLayers.cmake) it reads every source file
# and reports each include and each class that its folder may not use; ctest runs it as "layers".

function(_quvo_reaches target found)
    set(result "")
    get_target_property(libraries ${target} LINK_LIBRARIES)
    get_target_property(interface ${target} INTERFACE_LINK_LIBRARIES)
    foreach(library IN LISTS libraries interface)
        string(REGEX REPLACE "^\\$<LINK_ONLY:(.*)>$" "\\1" library "${library}")
        if(library MATCHES "QtWidgets|Qt[56]::Widgets|[Qq]wt")
            set(result "${target} -> ${library}")
        elseif(TARGET "${library}" AND NOT library MATCHES "^(Quvo::Qt|Qt[56]::|GDAL::)")
            _quvo_reaches(${library} below)
            if(below)
                set(result "${target} -> ${below}")
            endif()
        endif()
    endforeach()
    set(${found} "${result}" PARENT_SCOPE)
endfunction()

# Marks a library that works without widgets; call it after the target's target_link_libraries.
function(quvo_core_target target)
    _quvo_reaches(${target} found)
    if(found)
        message(FATAL_ERROR "A target without widgets reaches them: ${found}")
    endif()
endfunction()

if(NOT CMAKE_SCRIPT_MODE_FILE)
    return()
endif()
cmake_minimum_required(VERSION 3.25)

# A folder, and the folders whose headers its files may include besides their own.
set(allowed_messages "")
set(allowed_viewshed "")
set(allowed_vectordraw "")
set(allowed_colortable "messages")
set(allowed_dataset "messages;vectordraw")
set(allowed_runner "messages")
set(allowed_panels "colortable;dataset;messages")
set(allowed_app "panels;runner;dataset;colortable;messages;vectordraw")
set(allowed_samples "dataset;vectordraw")
set(allowed_bench "app;runner;dataset;vectordraw")
set(folders messages viewshed vectordraw colortable dataset runner panels app samples bench)

# Single headers that a folder may include from one that it may not know as a whole.
set(headers_runner "dataset/pathencoding\\.h")
set(headers_panels "runner/(QuvoProgressDialog|quoting)\\.h")

# A pattern, and the files that may hold it.
set(rules
    "QProcess[^a-zA-Z]|<QProcess>" "^runner/"
    "QMessageBox" "^messages/Prompt"
    "QFileDialog" "^dataset/QuvoFilerDialog"
    "QSettings" "^app/startup/(settings|environment)"
    "<QtWidgets/" "^$"
    "<[Qq]wt|Qwt[A-Z]" "^panels/shadedOptionsWidget"
    "qgetenv|getenv *\\(|qEnvironmentVariable" "^(app/startup/environment|messages/dico|.*/main\\.cpp)"
)

set(problems "")
foreach(folder IN LISTS folders)
    file(GLOB_RECURSE files RELATIVE "${ROOT}" "${ROOT}/${folder}/*.h" "${ROOT}/${folder}/*.cpp" "${ROOT}/${folder}/*.c")
    foreach(file IN LISTS files)
        file(STRINGS "${ROOT}/${file}" includes REGEX "^ *#include *\"")
        foreach(line IN LISTS includes)
            string(REGEX REPLACE "^ *#include *\"([^\"]*)\".*" "\\1" header "${line}")
            string(REGEX REPLACE "/.*" "" other "${header}")
            if(other STREQUAL header OR other STREQUAL folder OR other IN_LIST allowed_${folder})
                continue() # a generated header (ui_….h, ….moc), or one that the folder may know
            endif()
            if(headers_${folder} AND header MATCHES "^(${headers_${folder}})$")
                continue()
            endif()
            list(APPEND problems "${file} includes ${header}, which ${folder}/ may not know")
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
        if(file MATCHES "^viewshed/" AND text MATCHES "#include *<Q")
            list(APPEND problems "${file} uses Qt; the viewshed tool is plain C++ and GDAL")
        endif()
    endforeach()
endforeach()

if(problems)
    list(JOIN problems "\n  " problems)
    message(FATAL_ERROR "Layers:\n  ${problems}")
endif()
message(STATUS "Layers: no file reaches where it may not.")

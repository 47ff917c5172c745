# Targets for developers: "format" formats every file; "lint" checks the formatting and runs clang-tidy, and changes
# nothing. Run as a script (cmake -D BUILD=<build folder> -P Lint.cmake) it writes lint/compile_commands.json there, the
# commands without precompiled headers: clang cannot read those of gcc, and a missing include shows only without them.

if(CMAKE_SCRIPT_MODE_FILE)
    file(READ "${BUILD}/compile_commands.json" commands)
    string(REGEX REPLACE " -Winvalid-pch -include [^ ]*/cmake_pch\\.hxx" "" commands "${commands}")
    file(WRITE "${BUILD}/lint/compile_commands.json" "${commands}")
    return()
endif()

file(GLOB_RECURSE QUVO_SOURCES CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/[a-z]*/*.cpp" "${PROJECT_SOURCE_DIR}/[a-z]*/*.h" "${PROJECT_SOURCE_DIR}/[a-z]*/*.c")
list(FILTER QUVO_SOURCES EXCLUDE REGEX "^${PROJECT_SOURCE_DIR}/build/")
set(QUVO_CHECKED_SOURCES ${QUVO_SOURCES})
list(FILTER QUVO_CHECKED_SOURCES INCLUDE REGEX "\\.cpp$")
list(FILTER QUVO_CHECKED_SOURCES EXCLUDE REGEX "^${PROJECT_SOURCE_DIR}/tests/")

find_program(QUVO_CLANG_FORMAT clang-format)
find_program(QUVO_RUN_CLANG_TIDY NAMES run-clang-tidy run-clang-tidy-14)
if(QUVO_CLANG_FORMAT)
    add_custom_target(format COMMAND "${QUVO_CLANG_FORMAT}" -i ${QUVO_SOURCES} VERBATIM)
endif()
if(QUVO_CLANG_FORMAT AND QUVO_RUN_CLANG_TIDY)
    add_custom_target(lint
        COMMAND "${QUVO_CLANG_FORMAT}" --dry-run -Werror ${QUVO_SOURCES}
        COMMAND "${CMAKE_COMMAND}" -D "BUILD=${CMAKE_BINARY_DIR}" -P "${CMAKE_CURRENT_LIST_FILE}"
        COMMAND "${QUVO_RUN_CLANG_TIDY}" -quiet -p "${CMAKE_BINARY_DIR}/lint" ${QUVO_CHECKED_SOURCES}
        VERBATIM
    )
endif()

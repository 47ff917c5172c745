# quvo_test(<folder>/<unit> LIBRARIES <targets…> [TIMEOUT seconds] [LAUNCHER command…])
#
# Builds tests/<folder>/<unit>_test.cpp (Qt Test) and adds it to ctest as <folder>/<unit>. Every test runs headless,
# in a scratch home of its own; a Qt warning that it did not announce (QTest::ignoreMessage) fails it.
function(quvo_test name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "TIMEOUT" "LIBRARIES;LAUNCHER")
    string(REPLACE "/" "_" target "test_${name}")
    add_executable(${target} "${PROJECT_SOURCE_DIR}/tests/${name}_test.cpp")
    quvo_target(${target})
    target_link_libraries(${target} PRIVATE test_support ${ARG_LIBRARIES} Quvo::QtTest)
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    add_test(NAME ${name} COMMAND ${ARG_LAUNCHER} $<TARGET_FILE:${target}>)
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 60)
    endif()
    set(home "${CMAKE_BINARY_DIR}/tests/home/${target}")
    file(MAKE_DIRECTORY "${home}/runtime")
    file(CHMOD "${home}/runtime" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${ARG_TIMEOUT}
        # All but one warning: Qt 5's offscreen platform says "This plugin does not support propagateSizeHints()" of every
        # window of fixed size.
        FAIL_REGULAR_EXPRESSION "QWARN  : [^(]*\\([^)]*\\) ([^T]|T[^h]|Th[^i]|Thi[^s]|This[^ ]|This [^p]);QCRITICAL:;QFATAL "
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=${home};XDG_CONFIG_HOME=${home}/config;XDG_RUNTIME_DIR=${home}/runtime"
    )
endfunction()

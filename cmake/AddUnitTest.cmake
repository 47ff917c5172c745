# quvo_test(<folder>/<unit> LIBRARIES <targets…> [PROGRAMS <targets…>] [TIMEOUT seconds] [LAUNCHER command…])
#
# Builds tests/<folder>/<unit>_test.cpp (Qt Test) and adds it to ctest as <folder>/<unit>. Each test runs without a
# display and with a home folder of its own in the build. It fails on a Qt warning that it did not announce with
# QTest::ignoreMessage. PROGRAMS: what the test starts. TIMEOUT: 60 seconds by default. LAUNCHER: a command that starts the
# test program. A test whose libraries or programs are left out for want of Qwt is left out, too.
function(quvo_test name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "TIMEOUT" "LIBRARIES;PROGRAMS;LAUNCHER")
    string(REPLACE "/" "_" target "test_${name}")
    get_property(left_out GLOBAL PROPERTY QUVO_WITHOUT_QWT)
    foreach(needed IN LISTS ARG_LIBRARIES ARG_PROGRAMS)
        if(needed IN_LIST left_out)
            set_property(GLOBAL APPEND PROPERTY QUVO_WITHOUT_QWT ${target})
            return()
        endif()
    endforeach()
    add_executable(${target} "${PROJECT_SOURCE_DIR}/tests/${name}_test.cpp")
    quvo_target(${target})
    target_link_libraries(${target} PRIVATE test_support ${ARG_LIBRARIES} Quvo::QtTest)
    # Without CMake's own scan of each test for classes, which takes about as long as a third of the tests' compilation.
    get_filename_component(unit "${name}" NAME)
    set(moc "${CMAKE_CURRENT_BINARY_DIR}/moc/${target}")
    file(MAKE_DIRECTORY "${moc}")
    qt_generate_moc("${PROJECT_SOURCE_DIR}/tests/${name}_test.cpp" "${moc}/${unit}_test.moc" TARGET ${target})
    target_sources(${target} PRIVATE "${moc}/${unit}_test.moc")
    target_include_directories(${target} PRIVATE "${moc}")
    set_target_properties(${target} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
    if(ARG_PROGRAMS)
        add_dependencies(${target} ${ARG_PROGRAMS})
    endif()
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
        # Every warning but one fails the test: for each window of fixed size Qt 5's offscreen platform warns "This plugin
        # does not support propagateSizeHints()".
        FAIL_REGULAR_EXPRESSION "QWARN  : [^(]*\\([^)]*\\) ([^T]|T[^h]|Th[^i]|Thi[^s]|This[^ ]|This [^p]);QCRITICAL:;QFATAL "
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=${home};XDG_CONFIG_HOME=${home}/config;XDG_RUNTIME_DIR=${home}/runtime"
    )
endfunction()

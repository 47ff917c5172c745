# quvo_target(<target>) sets the include folder, warnings and sanitizers. Called for every target of this project.

function(quvo_target target)
    target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}")
    set_property(GLOBAL APPEND PROPERTY QUVO_TARGETS ${target})
    quvo_compile_options(${target})
endfunction()

# Sets what a precompiled header and the files that use it must agree on.
function(quvo_compile_options target)
    target_compile_definitions(${target} PRIVATE
        QT_DISABLE_DEPRECATED_BEFORE=0x050F00
        QT_NO_CAST_TO_ASCII
        QT_NO_CAST_FROM_BYTEARRAY
        QT_NO_URL_CAST_FROM_STRING
        QT_MESSAGELOGCONTEXT
    )
    if(MSVC)
        target_compile_options(${target} PRIVATE /W4 /utf-8 $<$<BOOL:${QUVO_WARNINGS_AS_ERRORS}>:/WX>)
        return()
    endif()
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual
        -Wno-missing-field-initializers # a record initialized by name leaves its other members to their defaults
        $<$<BOOL:${QUVO_WARNINGS_AS_ERRORS}>:-Werror>
    )
    if(QUVO_SANITIZERS)
        target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-omit-frame-pointer
                                                 -fno-sanitize-recover=undefined)
        target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    endif()
    if(QUVO_FUZZERS)
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
endfunction()

# The layer check must fail where it should: it is run on small trees that break one rule each.
file(REMOVE_RECURSE "${SCRATCH}")
function(expect outcome file text)
    file(REMOVE_RECURSE "${SCRATCH}/tree")
    file(WRITE "${SCRATCH}/tree/${file}" "${text}\n")
    execute_process(COMMAND "${CMAKE_COMMAND}" -D "ROOT=${SCRATCH}/tree" -P "${CHECK}" RESULT_VARIABLE result
                    OUTPUT_QUIET ERROR_VARIABLE error)
    if((outcome STREQUAL "fails") EQUAL (result EQUAL 0))
        message(FATAL_ERROR "expected: ${outcome}: ${file}: ${text}\n${error}")
    endif()
endfunction()

# Every arrow the wrong way round, and the pairs that do not know each other.
foreach(arrow IN ITEMS
        "app/process app/window" "app/startup app/window" "app/recipe app/window" "app/run app/window"
        "app/preview app/window" "app/process app/batch" "app/recipe app/batch" "app/run app/batch"
        "app/process app/recipe" "app/process app/run" "app/process app/preview" "app/recipe app/run"
        "app/recipe app/preview" "app/process app/startup" "app/startup app/process" "app/startup app/recipe"
        "app/preview app/run" "app/run app/preview" "app/preview app/recipe" "app/batch app/window"
        "app/window app/batch" "app/batch app/preview" "app/run app/startup"
        "panels/options panels/controls" "panels/options panels/observers" "panels/options panels"
        "panels/controls panels/options" "panels/controls panels" "panels/observers panels" "panels app/process"
        "dataset panels/options" "dataset runner" "dataset colortable" "colortable dataset" "runner panels"
        "runner app/process" "messages dataset" "vectordraw dataset" "viewshed viewshed/io" "viewshed dataset"
        "viewshed/io dataset")
    string(REPLACE " " ";" arrow "${arrow}")
    list(GET arrow 0 from)
    list(GET arrow 1 to)
    expect(fails ${from}/a.cpp "#include \"${to}/b.h\"")
endforeach()
expect(passes app/window/a.cpp "#include \"app/run/b.h\"\n#include \"ui_form.h\"")

# Single headers of a room that is closed otherwise, panels among each other, and files that stand nowhere.
expect(fails runner/a.cpp "#include \"dataset/rasterinfo.h\"")
expect(passes runner/a.cpp "#include \"dataset/pathencoding.h\"")
expect(fails panels/options/a.cpp "#include \"runner/progress.h\"")
expect(passes panels/options/a.cpp "#include \"runner/quoting.h\"")
expect(fails panels/one.cpp "#include \"panels/other.h\"")
expect(passes panels/one.cpp "#include \"panels/one.h\"\n#include \"panels/optionsWidget.h\"")
expect(fails elsewhere/a.cpp "int a;")

expect(passes app/run/a.cpp "#include \"runner/progress.h\"\n// QProcess is named in a comment only")
expect(fails app/run/a.cpp "QProcess process")
expect(fails app/run/b.cpp "QMessageBox box")
expect(fails panels/a.cpp "QSettings settings")
expect(fails viewshed/a.cpp "#include <QString>")
expect(fails viewshed/a.h "#include <gdal.h>")

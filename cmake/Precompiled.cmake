# quvo_precompile() lets the targets that quvo_target() was called for share two precompiled headers: one for targets that
# reach Qt Widgets, and one for those that reach only Qt Core; a target without Qt has none. So a core target still sees
# no widget. A target that uses Pango has none either: its package file adds -pthread, which the headers are compiled
# without. Called after all targets. A build without QUVO_PRECOMPILED, such as the preset release, checks that every file
# includes what it uses.

option(QUVO_PRECOMPILED "Share precompiled headers: faster to compile, but a missing include goes unnoticed" OFF)

set(core_headers <QDir> <QFileInfo> <QHash> <QLocale> <QObject> <QRegularExpression> <QString> <QStringList> <QTimer>
                 <QVector> <algorithm> <array> <cmath> <functional> <memory> <optional> <utility> <vector>)
set(widget_headers ${core_headers} <QApplication> <QBoxLayout> <QComboBox> <QDialog> <QEvent> <QImage> <QLabel> <QLineEdit>
                   <QPainter> <QPushButton> <QToolButton>)

function(_quvo_precompiled_header name component)
    file(WRITE "${CMAKE_BINARY_DIR}/precompiled/${name}.cpp" "")
    add_library(${name} OBJECT "${CMAKE_BINARY_DIR}/precompiled/${name}.cpp")
    set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
    quvo_compile_options(${name})
    target_link_libraries(${name} PRIVATE ${component})
    target_precompile_headers(${name} PRIVATE ${ARGN})
endfunction()

function(quvo_precompile)
    if(NOT QUVO_PRECOMPILED)
        return()
    endif()
    get_property(targets GLOBAL PROPERTY QUVO_TARGETS)
    _quvo_precompiled_header(precompiled_core Quvo::QtCore ${core_headers})
    _quvo_precompiled_header(precompiled_widgets Quvo::QtWidgets ${widget_headers})
    foreach(target IN LISTS targets)
        _quvo_reaches(${target} "Quvo::QtWidgets" widgets)
        _quvo_reaches(${target} "Quvo::Qt" qt)
        get_target_property(libraries ${target} LINK_LIBRARIES)
        if("PkgConfig::PANGO" IN_LIST libraries)
            continue()
        elseif(widgets)
            target_precompile_headers(${target} REUSE_FROM precompiled_widgets)
        elseif(qt)
            target_precompile_headers(${target} REUSE_FROM precompiled_core)
        endif()
    endforeach()
endfunction()

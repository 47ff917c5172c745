#pragma once

#include "app/preview/MapView.h"
#include "app/preview/PreviewPane.h"
#include "app/preview/previewgeometry.h"
#include "panels/intervisibilityOptionsWidget.h"
#include "tests/support/maindialog.h"

#include <QDirIterator>
#include <QMouseEvent>
#include <QTabWidget>

// For tests of the map in the main dialog; they link app_window.

/// Base of such tests: the files that the program makes for the map are in the folder "tmp" of each test.
class MapFixture : public MainDialogFixture
{
protected:
    /// Called before each test, in place of setUpTest().
    void setUpMap(int side)
    {
        qunsetenv("TMPDIR");
        setUpTest(side);
        QVERIFY(QDir().mkpath(path("tmp")));
        qputenv("TMPDIR", path("tmp").toUtf8());
    }

    /// Path of a file of that name which the program has made for the map; empty: there is none.
    QString mapFileNamed(const QString &name) const
    {
        QDirIterator files(path("tmp"), {name}, QDir::Files, QDirIterator::Subdirectories);
        return files.hasNext() ? files.next() : QString();
    }
};

/// Whether a child process of this one is alive.
inline bool hasChildren()
{
    QFile children(QStringLiteral("/proc/self/task/%1/children").arg(QCoreApplication::applicationPid()));
    return children.open(QIODevice::ReadOnly) && !children.readAll().trimmed().isEmpty();
}

/// The dialog, wide enough for the options and the map.
struct MapDialog : ShownDialog
{
    explicit MapDialog(const ToolPaths &tools)
        : ShownDialog(tools)
    {
        window.resize(1400, 800);
    }
    MapView *map() { return find<MapView>("m_pLInputImgPreview"); }
    PreviewPane *pane() { return find<PreviewPane>("m_pGrpBPreviews"); }
    const MapScene &scene() { return pane()->scene(); }
    intervisibilityOptionsWidget *panel() { return window.findChild<intervisibilityOptionsWidget *>(); }
    /// The finest picture of the ground, the product as its tool made it, and its finest picture on the map.
    QImage ground() { return hasGround() ? map()->map().ground.last().picture : QImage(); }
    QImage product() { return scene().product().picture; }
    QImage lines() { return hasOutput() ? map()->map().product.last().picture : QImage(); }
    bool hasGround() { return !map()->map().ground.isEmpty(); }
    bool hasOutput() { return map()->map().hasProduct(); }
    /// Whether the map shows a product and nothing more is being computed by a tool.
    bool isSettled() { return hasOutput() && !hasChildren(); }
    void showTab(int tab) { find<QTabWidget>("m_pTabWidget")->setCurrentIndex(tab); }

    /// The place of a cell in the map's widget.
    QPoint placeOf(const QPointF &cell)
    {
        const QRectF shown = shownRect(map()->view(), map()->size());
        const double scale = shown.width() / map()->view().width();
        return (shown.topLeft() + (cell - map()->view().topLeft()) * scale).toPoint();
    }

    /// The cell that the map shows at a place. Where a pixel covers several cells, the cell of `placeOf(cell)`
    /// is near `cell` only.
    QPointF cellOf(const QPoint &place)
    {
        const QRectF shown = shownRect(map()->view(), map()->size());
        const double scale = shown.width() / map()->view().width();
        return (QPointF(place) - shown.topLeft()) / scale + map()->view().topLeft();
    }

    /// Moves the mouse over the map. buttons: those that are held down.
    void moveTo(const QPoint &place, Qt::MouseButtons buttons = Qt::LeftButton)
    {
        QMouseEvent move(QEvent::MouseMove, place, Qt::NoButton, buttons, {});
        QApplication::sendEvent(map(), &move);
    }
};

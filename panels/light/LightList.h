#pragma once

#include "panels/options/lightpresets.h"

#include <QListWidget>

/// The lights to choose from, the program's own and the user's, each with a small picture of the sample DEM in
/// it. A context menu and the Delete key remove the user's own.
class LightList : public QListWidget
{
    Q_OBJECT

public:
    explicit LightList(QWidget *parent = nullptr);

    /// The shelf of the user's lights, which outlives the list. Without one (a null pointer) no light can be
    /// kept.
    void setShelf(LightShelf *shelf);

    /// Marks the entry of a light; no entry where the light has none.
    void showLight(const ShadedOptions &light);

    /// Asks for a name and keeps the light under it.
    void keep(const ShadedOptions &light);

    bool canKeep() const { return m_shelf != nullptr; }

signals:
    /// The user chose a light; its units and edges have no meaning.
    void chosen(const ShadedOptions &light);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void refresh();
    void paintPictures();
    void choose(const QListWidgetItem *item);
    void removeCurrent();
    const LightPreset *presetOf(const QListWidgetItem *item) const;

    LightShelf *m_shelf = nullptr;
    QVector<LightPreset> m_lights; ///< in the order of the rows
    ShadedOptions m_shown;
    bool m_isPainted = false; ///< the entries have their pictures
};

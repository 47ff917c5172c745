#pragma once

#include "dataset/chooser/sourceinfo.h"
#include "dataset/chooser/sourcetexts.h"

#include <QSplitter>

class QTreeWidget;
class SourcePreview;

/// Shows what is known of a source: a description, the list of its bands or layers, and a picture of the
/// current one.
class SourceView : public QSplitter
{
    Q_OBJECT

public:
    explicit SourceView(QWidget *parent = nullptr);

    /// Shows the source, with its first band or layer as the current one; partChanged() follows.
    void showSource(const SourceInfo &info);

    const SourceInfo &info() const { return m_info; }

    /// Index of the current band or layer, from 0; -1 where the source has none that can be chosen.
    int part() const { return m_part; }

    /// Whether a picture is being read.
    bool isBusy() const;

signals:
    void partChanged();
    /// The user double-clicked a band or layer, or pressed Return in their list.
    void activated();

private:
    QWidget *description();
    void showFacts(const QVector<SourceFact> &seen);
    void showParts();
    void onPartChanged();

    SourceInfo m_info;
    int m_part = -1;
    QTreeWidget *m_pFacts;
    QTreeWidget *m_pParts;
    SourcePreview *m_pPreview;
};

#pragma once

#include "dataset/chooser/sourceinfo.h"

#include <QSplitter>

class QFormLayout;
class QLabel;
class QTreeWidget;
class SourcePreview;

/// A label for any text, also one that holds tags: long lines are wrapped, and the text can be selected. The
/// parent owns it.
QLabel *plainLabel(const QString &name, QWidget *parent);

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
    QWidget *picture();
    void showFacts();
    void showParts();
    void onPartChanged();

    SourceInfo m_info;
    int m_part = -1;
    QFormLayout *m_pFacts;
    QTreeWidget *m_pParts;
    SourcePreview *m_pPreview;
    QLabel *m_pLSample;
};

#pragma once

#include <QLabel>

/// A text with links that can be followed without a mouse: the Tab key goes straight to its first link and from
/// there to the next one. QLabel would first take the focus itself, which nothing shows.
class LinkLabel : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;

    /// Shows a text that may hold links (rich text). Where it holds none, the Tab key passes the label by.
    void showText(const QString &text);

protected:
    void focusInEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;
};

#pragma once

#include <QByteArray>
#include <QString>

/// What a tool writes on its standard error, with a limit, since a tool that fails on every row of a large DEM
/// may write gigabytes. The first 256 KiB and the last 64 KiB at least are kept, and the first line between
/// them that begins with "ERROR"; "[...]" stands for the rest.
class ToolText
{
public:
    void feed(const QByteArray &bytes);

    /// The text so far, in the tool's encoding.
    QByteArray text() const;

private:
    void shortenTail();

    QByteArray m_head;
    QByteArray m_firstError; ///< of the part that was left out; empty: none
    QByteArray m_tail;
    bool m_isShortened = false;
};

/// The text with each line that begins with "ERROR" or "Warning" once: a line that differs from an earlier one
/// in digits only is left out, and the number of such lines follows the first ("ERROR 1: ... (12×)").
QString toldOnce(const QString &text);

#include "messages/KeyTranslator.h"

#include "messages/dicoindex.h"

#include <QRegularExpression>

#include <algorithm>
#include <iterator>

namespace
{

/// Whether the text still says something when every place in it is filled by an empty value.
bool hasWords(QString text)
{
    static const QRegularExpression places(QStringLiteral("%L?[0-9]{1,2}|%s"));
    return !text.remove(places).trimmed().isEmpty();
}

} // namespace

KeyTranslator::KeyTranslator(Texts texts, QObject *parent)
    : QTranslator(parent)
    , m_texts(std::move(texts))
{
    for (auto text = m_texts.begin(); text != m_texts.end();)
        text = hasWords(*text) ? std::next(text) : m_texts.erase(text);
}

QString KeyTranslator::translate(const char *, const char *, const char *disambiguation, int) const
{
    return disambiguation ? text(disambiguation) : QString();
}

QString KeyTranslator::text(const QByteArray &key) const
{
    return m_texts.value(key.left(static_cast<int>(dicoKeyLength)));
}

bool KeyTranslator::isRightToLeft() const
{
    const auto count =
        std::count_if(m_texts.begin(), m_texts.end(), [](const QString &text) { return text.isRightToLeft(); });
    return 2 * count > m_texts.size();
}

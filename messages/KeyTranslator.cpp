#include "messages/KeyTranslator.h"

#include "messages/dicoindex.h"

#include <algorithm>

KeyTranslator::KeyTranslator(Texts texts, QObject *parent)
    : QTranslator(parent)
    , m_texts(std::move(texts))
{ }

QString KeyTranslator::translate(const char *, const char *, const char *disambiguation, int) const
{
    return disambiguation ? text(disambiguation) : QString();
}

QString KeyTranslator::text(const QByteArray &key) const
{
    const QString found = m_texts.value(key.left(static_cast<int>(dicoKeyLength)));
    return found.trimmed().isEmpty() ? QString() : found; // without a text, Qt uses the default
}

bool KeyTranslator::isRightToLeft() const
{
    const auto count =
        std::count_if(m_texts.begin(), m_texts.end(), [](const QString &text) { return text.isRightToLeft(); });
    return 2 * count > m_texts.size();
}

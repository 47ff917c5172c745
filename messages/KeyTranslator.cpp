#include "messages/KeyTranslator.h"

#include "messages/dicoindex.h"

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
    return m_texts.value(key.left(static_cast<int>(dicoKeyLength)));
}

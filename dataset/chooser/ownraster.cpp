#include "dataset/chooser/ownraster.h"

#include "dataset/pathencoding.h"
#include "messages/dico.h"
#include "messages/label.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QVariant>

namespace
{

constexpr char messagesProperty[] = "quvoReaderMessages";

/// Keeps a message of the reader, a text in the encoding of the locale, in a property of the application.
void keepMessage(const char *text)
{
    const QStringList kept = qApp->property(messagesProperty).toStringList();
    qApp->setProperty(messagesProperty, kept + QStringList{QString::fromLocal8Bit(text)});
}

QStringList takeMessages()
{
    const QStringList kept = qApp->property(messagesProperty).toStringList();
    qApp->setProperty(messagesProperty, QVariant());
    return kept;
}

QString failureText(const QString &path)
{
    return labelText({"MESS_ENT_ECHEC", "L'en-tête de « %1 » n'a pas été réécrit."}).arg(path);
}

} // namespace

std::optional<RasterHeader> readOwnHeader(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) // a pipe would block
        return std::nullopt;
    const QByteArray bytes = file.read(rasterHeaderSize);
    if (bytes.size() < static_cast<int>(rasterHeaderSize))
        return std::nullopt;
    const RasterHeader header = parseRasterHeader({bytes.constData(), rasterHeaderSize});
    if (header.magic != "im2" && header.magic != "mi2" && !isOlderHeader(header))
        return std::nullopt;
    return header;
}

bool isOlderHeader(const RasterHeader &header)
{
    return header.magic == "im*";
}

QString headerText(const std::string &text)
{
    const QString read = QString::fromStdString(text);
    return (read.contains(QChar::ReplacementCharacter) ? QString::fromLatin1(text.c_str()) : read).trimmed();
}

QString convertOwnHeader(const QString &path)
{
    if (!dico_is_available())
        return labelText({"MESS_ENT_SANS_DICO",
                          "Les messages du lecteur de ce format sont introuvables. L'en-tête n'a pas été "
                          "réécrit."});
    dico_init(); // resets the callback
    dico_set_callback(keepMessage);
    const int descriptor = openRaster(encodePath(path).constData());
    if (descriptor >= 0) {
        QFile file;
        if (file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
            file.close();
    }
    QStringList texts = takeMessages();
    const auto header = readOwnHeader(path);
    if (!header || isOlderHeader(*header))
        texts.prepend(failureText(path));
    return texts.join(QLatin1Char('\n'));
}

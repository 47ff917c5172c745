#include "app/sidefile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace
{

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

SideFile::SideFile(const QString &dem)
    : m_path(dem + QStringLiteral(".aux.xml"))
    , m_existed(QFileInfo::exists(m_path))
    , m_content(contentOf(m_path))
{ }

void SideFile::restore() const
{
    if (m_path.isEmpty() || !QFileInfo::exists(m_path))
        return;
    if (!m_existed) {
        QFile::remove(m_path);
    } else if (!m_content.isEmpty() && contentOf(m_path) != m_content) {
        QSaveFile file(m_path);
        if (file.open(QIODevice::WriteOnly) && file.write(m_content) == m_content.size())
            file.commit();
    }
}

#include "CRecentFileList.h"
#include "ProgramSettings.h"

namespace tessarine
{
namespace
{
QString GetKey(int index)
{
    return QString("Recent File List/File%1").arg(index + 1);
}
}

CRecentFileList::CRecentFileList()
{
    const QSettings settings = OpenSettings();
    for (int i = 0; i < kMostFiles; ++i)
    {
        const QString path = settings.value(GetKey(i)).toString();
        if (!path.isEmpty() && !m_Files.contains(path))
        {
            m_Files.append(path);
        }
    }
}

void CRecentFileList::Add(const QString& path)
{
    m_Files.removeAll(path);
    m_Files.prepend(path);
    m_Files.resize(std::min<qsizetype>(m_Files.size(), kMostFiles));
    Write();
}

void CRecentFileList::Remove(const QString& path)
{
    m_Files.removeAll(path);
    Write();
}

void CRecentFileList::Write() const
{
    QSettings settings = OpenSettings();
    settings.remove("Recent File List");
    for (int i = 0; i < static_cast<int>(m_Files.size()); ++i)
    {
        settings.setValue(GetKey(i), m_Files[i]);
    }
}
}

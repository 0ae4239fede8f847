#pragma once
#include <QStringList>

namespace tessarine
{
/// The last files that the framework's commands opened or saved, the newest first. It is kept in the settings of
/// the user, and written with every change.
class CRecentFileList
{
public:
    static constexpr int kMostFiles = 4;

    /// Reads what the last run left.
    CRecentFileList();

    const QStringList& GetFiles() const { return m_Files; }

    /// Puts the file first; one that is there already moves.
    void Add(const QString& path);
    void Remove(const QString& path);

private:
    void Write() const;

    QStringList m_Files;
};
}

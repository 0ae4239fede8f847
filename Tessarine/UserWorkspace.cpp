#include "UserWorkspace.h"
#include <QFile>
#include <QStandardPaths>
#include <filesystem>
#include <unistd.h>

namespace tessarine
{
namespace
{
namespace fs = std::filesystem;

/// A folder that goes with it, unless it was renamed.
class TemporaryWorkspace
{
public:
    explicit TemporaryWorkspace(fs::path path) : m_Path(std::move(path)) {}
    ~TemporaryWorkspace()
    {
        std::error_code ignored;
        fs::remove_all(m_Path, ignored);
    }
    TemporaryWorkspace(const TemporaryWorkspace&) = delete;
    TemporaryWorkspace& operator=(const TemporaryWorkspace&) = delete;

    const fs::path& GetPath() const { return m_Path; }

private:
    fs::path m_Path;
};
}

void EnterUserWorkspace()
{
    EnterUserWorkspace(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
}

void EnterUserWorkspace(const QString& documents, const WorkspaceSize& size)
{
    const fs::path parent = QFile::encodeName(documents).toStdString();
    const fs::path folder = parent / "Tessarine";
    if (!fs::exists(folder))
    {
        fs::create_directories(parent);
        const TemporaryWorkspace made(parent / (".Tessarine-" + std::to_string(getpid())));
        WriteWorkspace(made.GetPath(), size);
        fs::rename(made.GetPath(), folder);
    }
    fs::current_path(folder);
}
}

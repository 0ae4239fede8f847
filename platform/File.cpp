#include "File.h"
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <ftw.h>
#include <initializer_list>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tessarine
{
namespace
{
namespace fs = std::filesystem;

constexpr std::size_t kChunk = std::size_t{1} << 20U;
constexpr int kMostLinks = 40; // as the kernel follows
constexpr int kMostTemporaryNames = 10000;

/// In English whatever the user's locale is.
std::string ReasonOf(int error)
{
    switch (error)
    {
    case ENOENT: return "no such file";
    case EACCES:
    case EPERM: return "permission denied";
    case EISDIR: return "it is a folder";
    case ENOTDIR: return "a part of its path is a file";
    case ELOOP: return "its symbolic links form a circle";
    case ENAMETOOLONG: return "its name is too long";
    case ENXIO: return "it is no ordinary file";
    case ENOSPC: return "the disk is full";
    case EDQUOT: return "the disk quota is used up";
    case EFBIG: return "it would exceed the largest size of a file";
    case EROFS: return "the disk is read-only";
    default: break;
    }
    const char* text = ::strerrordesc_np(error);
    return text != nullptr ? text : "error " + std::to_string(error);
}

/// "cannot open Data/x.obj: no such file (working folder: /home/me)"
[[noreturn]] void Refuse(const char* action, const fs::path& path, const std::string& reason)
{
    if (path.empty())
    {
        throw FileError(std::string("cannot ") + action + " a file without a name");
    }
    std::string text = std::string("cannot ") + action + " " + path.string() + ": " + reason;
    std::error_code error;
    if (const fs::path folder = fs::current_path(error); path.is_relative() && !error)
    {
        text += " (working folder: " + folder.string() + ")";
    }
    throw FileError(text);
}

/// Repeats a system call that a signal interrupts.
template <class TCall>
auto Retry(TCall call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
    {
        result = call();
    }
    return result;
}

class Descriptor
{
public:
    explicit Descriptor(int number) : m_nNumber(number) {}
    ~Descriptor()
    {
        if (m_nNumber >= 0)
        {
            ::close(m_nNumber);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Get() const { return m_nNumber; }

private:
    int m_nNumber;
};

std::string KindRefused(mode_t mode)
{
    if (S_ISDIR(mode))
    {
        return ReasonOf(EISDIR);
    }
    return S_ISREG(mode) ? std::string() : "it is no ordinary file";
}

constexpr char kTooLargeForMemory[] = "it does not fit in the memory of this machine";

/// A file that does not fit must be refused: the kernel would end the process before an allocation fails.
std::size_t GetMostBytes()
{
    const long pages = ::sysconf(_SC_PHYS_PAGES);
    const long pageSize = ::sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0)
    {
        return std::string().max_size();
    }
    return static_cast<std::size_t>(pages) * static_cast<std::size_t>(pageSize) / 2;
}

/// Opening alone does something to some devices: a tape is wound back, a terminal's line is raised.
void RefuseBeforeOpening(const fs::path& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
    {
        Refuse("open", path, ReasonOf(errno));
    }
    if (const std::string reason = KindRefused(status.st_mode); !reason.empty())
    {
        Refuse("open", path, reason);
    }
}

/// Opening a pipe that nobody writes to would wait for ever without O_NONBLOCK.
Descriptor OpenToRead(const fs::path& path)
{
    RefuseBeforeOpening(path);
    return Descriptor(
        Retry([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
}

/// Its size. Looked at again now that it is open: it may be another by then.
std::size_t DemandOrdinary(const Descriptor& file, const fs::path& path)
{
    struct stat status = {};
    if (file.Get() < 0 || ::fstat(file.Get(), &status) != 0)
    {
        Refuse("open", path, ReasonOf(errno));
    }
    if (const std::string reason = KindRefused(status.st_mode); !reason.empty())
    {
        Refuse("open", path, reason);
    }
    return static_cast<std::size_t>(std::max<off_t>(status.st_size, 0));
}

/// What an ordinary file without a size of its own gives at most: some of the system's have no end.
constexpr std::size_t kMostUntoldBytes = std::size_t{64} << 20U;

void Take(std::size_t bytes, ReadBudget& budget, const fs::path& path)
{
    if (bytes > budget.left)
    {
        budget.left = 0;
        Refuse("read", path, budget.refusal);
    }
    budget.left -= bytes;
}

/// Reads until nothing is left, whatever size the file claims, and takes it from every budget.
std::string ReadToEnd(int descriptor, const fs::path& path, std::size_t expected,
                      std::initializer_list<ReadBudget*> budgets)
{
    const auto chunk = std::make_unique_for_overwrite<char[]>(kChunk);
    std::string bytes;
    for (bytes.reserve(expected);;)
    {
        const ssize_t count = Retry([&] { return ::read(descriptor, chunk.get(), kChunk); });
        if (count < 0)
        {
            Refuse("read", path, ReasonOf(errno));
        }
        if (count == 0)
        {
            return bytes;
        }
        for (ReadBudget* pBudget : budgets)
        {
            Take(static_cast<std::size_t>(count), *pBudget, path);
        }
        bytes.append(chunk.get(), static_cast<std::size_t>(count));
    }
}

/// Names of a process's own streams: replacing what they lead to would take it from whoever opened it.
/// @param name as the user gave it
void RefuseAStream(const fs::path& name, const fs::path& target)
{
    const std::string path = target.lexically_normal().string();
    if (path.starts_with("/dev/std") || path.starts_with("/dev/fd/") || path.starts_with("/proc/"))
    {
        Refuse("write", name,
               "it is no ordinary file; an operation that can print what it makes does so for the name -");
    }
}

/// The name behind every symbolic link, also where the last one leads to nothing yet.
fs::path FollowLinks(const fs::path& name)
{
    std::error_code error;
    fs::path target = fs::absolute(name, error);
    for (int links = 0; !error && fs::is_symlink(fs::symlink_status(target, error)); ++links)
    {
        RefuseAStream(name, target);
        if (links == kMostLinks)
        {
            Refuse("write", name, ReasonOf(ELOOP));
        }
        target = target.parent_path() / fs::read_symlink(target, error);
    }
    return target;
}

/// What a signal that ends the process has to remove; empty where nothing.
constexpr std::size_t kMostTemporaries = 4;
char g_szTemporaries[kMostTemporaries][PATH_MAX] = {};

void RemoveTemporariesAndEnd(int signal)
{
    for (const auto& name : g_szTemporaries)
    {
        if (name[0] != '\0')
        {
            ::unlink(name);
        }
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

/// Does nothing where there is no room left.
void NoteTemporary(std::string_view name) noexcept
{
    const auto free = std::find_if(std::begin(g_szTemporaries), std::end(g_szTemporaries),
                                   [](const auto& noted) { return noted[0] == '\0'; });
    if (free != std::end(g_szTemporaries) && !name.empty() && name.size() < sizeof *free)
    {
        std::memcpy(*free + 1, name.data() + 1, name.size() - 1);
        (*free)[name.size()] = '\0';
        (*free)[0] = name[0]; // last: a signal in between finds nothing to remove
    }
}

void ForgetTemporary(const char* name) noexcept
{
    for (auto& noted : g_szTemporaries)
    {
        if (std::strcmp(noted, name) == 0)
        {
            noted[0] = '\0';
        }
    }
}

/// A file over the process's limit is a failed write, not the end of the process.
void IgnoreFileSizeSignal()
{
    static const bool done = []
    {
        struct sigaction action = {};
        if (::sigaction(SIGXFSZ, nullptr, &action) == 0 && action.sa_handler == SIG_DFL)
        {
            std::signal(SIGXFSZ, SIG_IGN);
        }
        return true;
    }();
    static_cast<void>(done);
}
}

std::string ReadFile(const fs::path& path)
{
    ReadBudget budget{GetMostBytes(), kTooLargeForMemory};
    return ReadFile(path, budget);
}

std::string ReadFile(const fs::path& path, ReadBudget& budget)
{
    if (budget.left == 0)
    {
        Refuse("read", path, budget.refusal);
    }
    const Descriptor file = OpenToRead(path);
    const std::size_t size = DemandOrdinary(file, path);
    if (size > GetMostBytes())
    {
        Refuse("read", path, kTooLargeForMemory);
    }
    if (size > budget.left)
    {
        Refuse("read", path, budget.refusal);
    }
    ReadBudget own{std::max(size, kMostUntoldBytes),
                   "it gives more than 64 MiB, and more than the size that it tells"};
    return ReadToEnd(file.Get(), path, size, {&budget, &own});
}

FileHead ReadFileHead(const fs::path& path, std::size_t bytes)
{
    const Descriptor file = OpenToRead(path);
    const std::size_t size = DemandOrdinary(file, path);
    FileHead head{size, std::string(bytes, '\0')};
    const ssize_t count = Retry([&] { return ::pread(file.Get(), head.bytes.data(), bytes, 0); });
    if (count < 0)
    {
        Refuse("read", path, ReasonOf(errno));
    }
    head.bytes.resize(static_cast<std::size_t>(count));
    return head;
}

std::string ReadStream(const fs::path& path)
{
    const Descriptor stream(Retry([&] { return ::open(path.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC); }));
    struct stat status = {};
    if (stream.Get() < 0 || ::fstat(stream.Get(), &status) != 0)
    {
        Refuse("open", path, ReasonOf(errno));
    }
    if (S_ISDIR(status.st_mode))
    {
        Refuse("open", path, ReasonOf(EISDIR));
    }
    ReadBudget budget{kMostStreamBytes, "it gives more than 64 MiB"};
    return ReadToEnd(stream.Get(), path, 0, {&budget});
}

ReplacingFile::ReplacingFile(fs::path target) : m_Name(std::move(target))
{
    IgnoreFileSizeSignal();
    if (!m_Name.has_filename())
    {
        Refuse("write", m_Name, "it names no file");
    }
    RefuseAStream(m_Name, m_Name);
    m_Target = FollowLinks(m_Name);
    struct stat status = {};
    const bool exists = ::stat(m_Target.c_str(), &status) == 0;
    if (exists)
    {
        if (const std::string reason = KindRefused(status.st_mode); !reason.empty())
        {
            Refuse("write", m_Name, reason);
        }
        if (::faccessat(AT_FDCWD, m_Target.c_str(), W_OK, AT_EACCESS) != 0)
        {
            Refuse("write", m_Name, ReasonOf(errno));
        }
    }
    CreateTemporary(exists ? status.st_mode & 0777U : 0666U);
    if (exists && ::fchmod(m_nDescriptor, status.st_mode & 0777U) != 0) // the user's mask took part of it
    {
        const int error = errno;
        Discard();
        Refuse("write", m_Name, ReasonOf(error));
    }
}

void ReplacingFile::CreateTemporary(unsigned permissions)
{
    static std::atomic<unsigned> counter{0};
    m_Pending.reserve(kChunk);
    for (int attempt = 0; attempt < kMostTemporaryNames; ++attempt)
    {
        m_Temporary = m_Target.parent_path() / (".tessarine-" + std::to_string(::getpid()) + "-" +
                                                std::to_string(++counter) + ".part");
        m_nDescriptor = Retry(
            [&]
            { return ::open(m_Temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions); });
        if (m_nDescriptor >= 0 || errno != EEXIST)
        {
            break;
        }
    }
    if (m_nDescriptor < 0)
    {
        const int error = errno;
        m_Temporary.clear();
        Refuse("write", m_Name, error == ENOENT ? "no such folder" : ReasonOf(error) + " in its folder");
    }
    NoteTemporary(m_Temporary.native()); // needs no memory: nobody else knows of the file yet
}

ReplacingFile::~ReplacingFile()
{
    Discard();
}

void ReplacingFile::Discard() noexcept
{
    if (m_nDescriptor >= 0)
    {
        ::close(std::exchange(m_nDescriptor, -1));
    }
    if (!m_Temporary.empty())
    {
        ::unlink(m_Temporary.c_str());
        ForgetTemporary(m_Temporary.c_str());
        m_Temporary.clear();
    }
}

void ReplacingFile::Write(std::string_view bytes)
{
    while (!bytes.empty())
    {
        const std::size_t count = std::min(bytes.size(), kChunk - m_Pending.size());
        m_Pending.append(bytes.substr(0, count));
        bytes.remove_prefix(count);
        if (m_Pending.size() == kChunk)
        {
            WritePending();
        }
    }
}

void ReplacingFile::WritePending()
{
    for (std::string_view rest = m_Pending; !rest.empty();)
    {
        const ssize_t count = Retry([&] { return ::write(m_nDescriptor, rest.data(), rest.size()); });
        if (count < 0)
        {
            Refuse("write", m_Name, ReasonOf(errno));
        }
        rest.remove_prefix(static_cast<std::size_t>(count));
    }
    m_Pending.clear();
}

void ReplacingFile::Finish()
{
    if (m_nDescriptor < 0)
    {
        return;
    }
    WritePending();
    // Interrupted or not, the descriptor is closed and must not be closed again.
    if (::close(std::exchange(m_nDescriptor, -1)) != 0 && errno != EINTR)
    {
        Refuse("write", m_Name, ReasonOf(errno));
    }
}

void ReplacingFile::Commit()
{
    Finish();
    if (std::rename(m_Temporary.c_str(), m_Target.c_str()) != 0)
    {
        Refuse("write", m_Name, ReasonOf(errno));
    }
    ForgetTemporary(m_Temporary.c_str());
    m_Temporary.clear();
}

bool ListFolder(const fs::path& folder, std::vector<std::string>& names)
{
    const auto close = [](DIR* opened) { ::closedir(opened); };
    const std::unique_ptr<DIR, decltype(close)> opened(::opendir(folder.c_str()), close);
    if (opened == nullptr)
    {
        return false;
    }
    errno = 0;
    for (const dirent* entry = ::readdir(opened.get()); entry != nullptr; entry = ::readdir(opened.get()))
    {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
        {
            names.emplace_back(name);
        }
        errno = 0;
    }
    return errno == 0;
}

void RemoveTree(const fs::path& path) noexcept
{
    constexpr int kMostOpenFolders = 8;
    const auto remove = [](const char* entry, const struct stat*, int, FTW*)
    {
        std::remove(entry);
        return 0; // go on with the others
    };
    ::nftw(path.c_str(), remove, kMostOpenFolders, FTW_DEPTH | FTW_PHYS);
}

void RefuseWriting(const fs::path& path, const std::error_code& error)
{
    Refuse("write", path, ReasonOf(error.value()));
}

void FlushToDisk(const fs::path& path)
{
    const Descriptor file(Retry([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC); }));
    if (file.Get() < 0 || ::fsync(file.Get()) != 0)
    {
        Refuse("write", path, ReasonOf(errno));
    }
}

void RemoveTemporaryFilesOnSignals()
{
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM})
    {
        struct sigaction action = {};
        if (::sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_DFL)
        {
            std::signal(number, RemoveTemporariesAndEnd);
        }
    }
}

fs::path GetCurrentFolder()
{
    std::error_code error;
    fs::path folder = fs::current_path(error);
    if (error)
    {
        throw FileError("cannot tell the current folder: " + (error.value() == ENOENT
                                                                  ? "it was removed; start from another one"
                                                                  : ReasonOf(error.value())));
    }
    return folder;
}

void SetCurrentFolder(const fs::path& folder)
{
    if (folder.empty())
    {
        throw FileError("cannot enter a folder without a name");
    }
    std::error_code error;
    fs::current_path(folder, error);
    if (error)
    {
        Refuse("enter the folder", folder,
               error.value() == ENOENT ? "no such folder" : ReasonOf(error.value()));
    }
}

void TrySetCurrentFolder(const fs::path& folder) noexcept
{
    std::error_code error;
    fs::current_path(folder, error);
}

CurrentFolderGuard::CurrentFolderGuard() : m_nFolder(::open(".", O_PATH | O_DIRECTORY | O_CLOEXEC))
{
    if (m_nFolder < 0) // once left, it could not be entered again
    {
        const std::string reason = ReasonOf(errno) + "; start from another one";
        Refuse("work in the folder", GetCurrentFolder(), reason);
    }
}

CurrentFolderGuard::~CurrentFolderGuard()
{
    static_cast<void>(::fchdir(m_nFolder)); // a folder that was closed meanwhile stays left
    ::close(m_nFolder);
}
}

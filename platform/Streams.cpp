#include "Streams.h"
#include "File.h"
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tessarine
{
namespace
{
/// A closed stream gets a descriptor that fails in the direction in which the stream is used.
void OccupyIfClosed(int descriptor, int uselessMode)
{
    if (fcntl(descriptor, F_GETFD) != -1 || errno != EBADF)
    {
        return;
    }
    const int opened = open("/dev/null", uselessMode);
    if (opened != -1 && opened != descriptor)
    {
        dup2(opened, descriptor);
        close(opened);
    }
}
}

void PrepareStreams()
{
    OccupyIfClosed(STDIN_FILENO, O_WRONLY);
    OccupyIfClosed(STDOUT_FILENO, O_RDONLY);
    OccupyIfClosed(STDERR_FILENO, O_RDONLY);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

void WriteStandardOutput(std::string_view text)
{
    errno = 0;
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
    {
        throw FileError(std::string("cannot write to standard output: ") + std::strerror(errno));
    }
}

void WriteStandardError(std::string_view text)
{
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

std::string ReadStandardInput()
{
    std::string text;
    char piece[1U << 14U];
    errno = 0;
    while (const std::size_t count = std::fread(piece, 1, sizeof piece, stdin))
    {
        text.append(piece, count);
        if (text.size() > kMostStreamBytes)
        {
            throw FileError("cannot read standard input: it gives more than 64 MiB");
        }
    }
    if (std::ferror(stdin) != 0)
    {
        throw FileError(std::string("cannot read standard input: ") + std::strerror(errno));
    }
    return text;
}

bool IsErrorStreamTerminal()
{
    return isatty(STDERR_FILENO) == 1;
}
}

#pragma once
#include <string>
#include <string_view>

/// The three streams that a process starts with.
namespace tessarine
{
/// Makes the streams safe to use: what was closed at the start stays unusable, so that no file opened later
/// takes its place; and a pipe without a reader is a failed write, not the end of the process. Called once,
/// first.
void PrepareStreams();

/// Writes to standard output, at once. Throws FileError (see File.h) when not all of it could be written.
void WriteStandardOutput(std::string_view text);

/// Writes to standard error what nobody needs to miss when it is lost.
void WriteStandardError(std::string_view text);

/// All of standard input. Throws FileError.
std::string ReadStandardInput();

/// Whether a person sits at the other end of standard error.
bool IsErrorStreamTerminal();
}

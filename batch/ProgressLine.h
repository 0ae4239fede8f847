#pragma once
#include <string>

namespace tessarine
{
/// Shows a person at the terminal, while it lives, which operation runs: a line on standard error that the
/// next output takes the place of. Nothing is written where standard error is no terminal.
class ProgressLine
{
public:
    explicit ProgressLine(const std::string& operation);
    ~ProgressLine() { Erase(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Takes the line away, if there is one.
    static void Erase();
};
}

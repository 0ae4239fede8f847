#pragma once
#include "IException.h"
#include <string>
#include <utility>

namespace tessarine
{
/// Ends a command with one sentence that tells the user what went wrong and what to do.
/// Whoever runs the command for the user catches it; nothing else does.
class Failure : public IException
{
public:
    explicit Failure(std::string message) : IException(std::move(message)) {}

    /// The same, where the command has already shown the user a message box of its own.
    static Failure AfterMessageBox(std::string message)
    {
        Failure failure(std::move(message));
        failure.m_bShown = true;
        return failure;
    }

    /// The same, where a line on the console has told it: a window goes on as if nothing had been asked.
    static Failure AfterConsoleLine(std::string message) { return AfterMessageBox(std::move(message)); }

    bool WasShown() const { return m_bShown; }

private:
    bool m_bShown = false;
};
}

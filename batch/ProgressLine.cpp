#include "ProgressLine.h"
#include "Streams.h"
#include <utility>

namespace tessarine
{
void ProgressLine::Begin(const std::string& operation)
{
    if (IsErrorStreamTerminal())
    {
        m_strOperation = operation;
        m_Begin = std::chrono::steady_clock::now();
        Show();
    }
}

void ProgressLine::End()
{
    Hide();
    m_strOperation.clear();
}

void ProgressLine::Hide()
{
    if (std::exchange(m_bShown, false))
    {
        WriteStandardError("\r\033[K");
    }
}

void ProgressLine::Show()
{
    if (!m_strOperation.empty())
    {
        const auto elapsed = std::chrono::steady_clock::now() - m_Begin;
        // The cursor goes back to the start: an error line, which is longer, simply covers this one.
        WriteStandardError(
            MakeProgressText(m_strOperation, std::chrono::duration_cast<std::chrono::seconds>(elapsed)) +
            "\r");
        m_bShown = true;
    }
}

std::string MakeProgressText(const std::string& operation, std::chrono::seconds elapsed)
{
    const std::string text = operation + " ...";
    return elapsed.count() > 0 ? text + ' ' + std::to_string(elapsed.count()) + " s" : text;
}
}

#pragma once
#include <chrono>
#include <string>

namespace tessarine
{
/// Shows a person at the terminal which operation runs, and since when: a line on standard error, below all
/// output. Nothing is written where standard error is no terminal.
class ProgressLine
{
public:
    ProgressLine() = default;
    ~ProgressLine() { End(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void Begin(const std::string& operation);
    void End();

    /// Around output: takes the line away, and brings it back with the seconds of now.
    void Hide();
    void Show();

private:
    std::string m_strOperation; ///< empty while none runs, or nobody looks
    std::chrono::steady_clock::time_point m_Begin;
    bool m_bShown = false;
};

/// "import ...", and from the first whole second on "import ... 1 s".
std::string MakeProgressText(const std::string& operation, std::chrono::seconds elapsed);
}

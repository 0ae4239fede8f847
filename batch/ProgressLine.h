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
    /// An operation while it runs.
    class Run
    {
    public:
        Run(ProgressLine& line, const std::string& operation) : m_Line(line) { m_Line.Begin(operation); }
        ~Run() { m_Line.End(); }
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;

    private:
        ProgressLine& m_Line;
    };

    /// Around output: takes the line away, and brings it back with the seconds of now.
    void Hide();
    void Show();

private:
    void Begin(const std::string& operation);
    void End();

    std::string m_strOperation; ///< empty while none runs, or nobody looks
    std::chrono::steady_clock::time_point m_Begin;
    bool m_bShown = false;
};

/// "import ...", and from the first whole second on "import ... 1 s".
std::string MakeProgressText(const std::string& operation, std::chrono::seconds elapsed);
}

#pragma once
#include <memory>
#include <string>

/// What has to be settled around the making of the QApplication.
namespace tessarine
{
/// Asks Qt for the one kind of window that Tessarine draws on, whatever the desktop prefers, and spares it a warning
/// where the user's locale is not UTF-8. Before the QApplication.
void PrepareForDisplay();

/// A connection to the display that the command line names, or else the environment. The QApplication would end the
/// process where there is none. It is held while that makes its own: some displays start anew when the last one ends.
class DisplayConnection
{
public:
    DisplayConnection(int argc, const char* const* argv);

    /// What keeps a window from opening, as a sentence: no display that can be reached, or a platform that Tessarine
    /// cannot draw on. Empty where nothing does.
    const std::string& GetProblem() const { return m_strProblem; }

private:
    std::string m_strProblem;
    std::shared_ptr<void> m_pDisplay;
};

/// Numbers are read and written in the C locale, whatever the user's is. Right behind the QApplication, which
/// changes it.
void RestoreNumberForm();
}

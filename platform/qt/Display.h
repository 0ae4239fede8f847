#pragma once
#include <string>

/// What has to be settled around the making of the QApplication.
namespace tessarine
{
/// Asks Qt for the one kind of window that Tessarine draws on, whatever the desktop prefers, and spares it a warning
/// where the user's locale is not UTF-8. Before the QApplication.
void PrepareForDisplay();

/// What keeps the words of the command line from opening a window, as a sentence: no display that can be reached, or
/// a platform that Tessarine cannot draw on. Empty where nothing does. The QApplication would end the process for it.
std::string FindDisplayProblem(int argc, const char* const* argv);

/// Numbers are read and written in the C locale, whatever the user's is. Right behind the QApplication, which
/// changes it.
void RestoreNumberForm();
}

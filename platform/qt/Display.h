#pragma once

/// What has to be settled around the making of the QApplication.
namespace tessarine
{
/// Asks Qt for the one kind of window that Tessarine draws on, whatever the desktop prefers, and spares it a warning
/// where the user's locale is not UTF-8. Before the QApplication.
void PrepareForDisplay();

/// Whether the display can be reached: without it the QApplication ends the process. Before the QApplication.
bool IsDisplayThere();

/// Numbers are read and written in the C locale, whatever the user's is. Right behind the QApplication, which
/// changes it.
void RestoreNumberForm();
}

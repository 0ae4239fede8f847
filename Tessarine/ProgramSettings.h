#pragma once
#include <QSettings>

namespace tessarine
{
/// What the program keeps for this user from one run to the next.
QSettings OpenSettings();
}

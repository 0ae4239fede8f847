#pragma once
#include <QIcon>

namespace tessarine
{
/// The picture of a toolbar button, or of the program (ResourceID::MainFrame): drawn at 24 by 24 and for dense
/// screens at twice that. Empty for an entry that has none.
QIcon LoadPicture(int id);
}

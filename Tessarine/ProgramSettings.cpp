#include "ProgramSettings.h"
#include "MenuTables.h"
#include <string_view>

namespace tessarine
{
QSettings OpenSettings()
{
    constexpr char kRegistryKey[] = "Local AppWizard-Generated Applications";
    const std::string_view name = GetDocumentField(0);
    return QSettings(kRegistryKey, QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
}
}

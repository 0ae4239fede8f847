#include "FileFilter.h"

namespace tessarine
{
namespace
{
/// The name without the pattern that it repeats at its end.
QString DropPattern(const QString& name)
{
    const auto bracket = name.lastIndexOf('(');
    return name.endsWith(')') && bracket > 0 ? name.left(bracket) : name;
}

/// "*.*" means every file, also those without a dot.
QString WidenPattern(const QString& pattern)
{
    return pattern == "*.*" ? QString("*") : QString(pattern).replace(';', ' ');
}
}

QStringList ParseFileFilter(const std::string& filter)
{
    const QStringList fields = QString::fromStdString(filter).split('|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < fields.size() && !fields[i].isEmpty(); i += 2)
    {
        filters.append(DropPattern(fields[i]) + "(" + WidenPattern(fields[i + 1]) + ")");
    }
    return filters;
}
}

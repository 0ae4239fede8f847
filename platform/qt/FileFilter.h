#pragma once
#include <QStringList>
#include <string>

namespace tessarine
{
/// The filters of a file question ("name|pattern|" pairs, ended by one more "|") as a file dialog takes them
/// ("name(pattern)").
///
/// Kept    An empty name ends the list: pairs behind it are not offered.
QStringList ParseFileFilter(const std::string& filter);
}

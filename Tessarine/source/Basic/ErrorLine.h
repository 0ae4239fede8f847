#pragma once
#include <string>

namespace tessarine
{
/// Prints the text and a line end on standard error, behind what the console holds back.
void PrintErrorLine(const std::string& text);
}

#pragma once
#include <functional>
#include <string>
#include <string_view>

namespace tessarine
{
/// Prints the text and a line end on standard error, behind what the console holds back. Whatever the text holds, it
/// is one line and leaves a terminal alone, see SpellOut.
void PrintErrorLine(std::string_view text);

/// Is given what goes to standard error by PrintErrorLine, line ends included.
using ErrorListener = std::function<void(std::string_view)>;

/// Gives back the listener before it; an empty one is nobody.
ErrorListener SetErrorListener(ErrorListener listener);

/// The text with its control characters spelt out (\n, \r, \x1B), and a long one with its middle left out.
std::string SpellOut(std::string_view text);
}

#pragma once
#include <string>
#include <vector>

namespace tessarine
{
/// The program tessarine-samples: makes the sample workspace in the folder that its only argument names.
///
/// Says    Its usage on standard output (--help), or on standard error where the words are wrong; failures on standard
///         error.
/// @return the exit status: 0 done, 1 failed, 2 the words are wrong and nothing was done
int RunSamplesTool(const std::vector<std::string>& arguments) noexcept;
}

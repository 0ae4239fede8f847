#pragma once
#include <string>

namespace tessarine
{
/// Why something ended, by the exception that is being handled: a sentence for the user. Throws where there is no memory
/// for it.
/// @param outcome what has become of the model, for the reasons that do not tell it
std::string DescribeFailure(const std::string& outcome = {});
}

#pragma once
#include "Capture.h"
#include <string>
#include <vector>

namespace tessarine
{
/// The reports to be expected: none of them where reports are compiled out.
inline std::vector<std::string> WhereReported(std::vector<std::string> expressions)
{
#if !TESSARINE_ASSERTIONS
    expressions.clear();
#endif
    return expressions;
}
}

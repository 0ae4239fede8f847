#pragma once
#include "EigenTable.h"
#include "Matrix.h"
#include "smVec3d.h"
#include <vector>

namespace tessarine
{
/// The limit of Loop subdivision as it is defined, a projection for every sample, and every power by pow.
double EvalBoxSplineLiterally(const double* b, double v, double w);
smVec3d EvalLimitPointLiterally(const std::vector<smVec3d>& c, double v, double w, const EigenData& data,
                                Matrix& weights);
}

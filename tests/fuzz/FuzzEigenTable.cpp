// A table for the limit surface, read from memory and evaluated: numbers of any size, in arrays of the right ones.
#include "EigenTable.h"
#include "Failure.h"
#include "LimitEvaluation.h"
#include <cstdint>
#include <cstdlib>
#include <string>

namespace
{
using namespace tessarine;

void Demand(bool holds)
{
    if (!holds)
    {
        std::abort();
    }
}

void Evaluate(const EigenData& data)
{
    const auto order = static_cast<std::size_t>(data.GetOrder());
    const LimitPatch patch(data, std::vector<smVec3d>(order, smVec3d(1.0, 2.0, 3.0)));
    for (const auto& [v, w] : {std::array{1.0, 0.0}, std::array{0.25, 0.5}, std::array{1e-9, 0.0}})
    {
        const LimitSample sample(data, v, w);
        Demand(sample.GetWeights().size() == order);
        patch.EvalEigenPatch(sample);
    }
}
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try
    {
        const EigenTable table = ParseEigenTable(std::string(data, data + size));
        Demand(!table.IsMissing());
        for (int n = EigenTable::kLeastValence; n <= table.GetMostValence(); ++n)
        {
            Demand(table.Get(n).GetValence() == n);
            Evaluate(table.Get(n));
        }
    }
    catch (const Failure&) // a file that is refused
    {
    }
    return 0;
}

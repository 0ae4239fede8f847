#include "LimitText.h"
#include "Assert.h"
#include "CollectPatch.h"
#include "DSBrep.h"
#include "Failure.h"
#include "LimitEvaluation.h"
#include <charconv>
#include <vector>

namespace tessarine
{
namespace
{
/// With blanks between them and a newline at the end.
template <class TNumbers>
std::string JoinNumbers(const TNumbers& numbers)
{
    std::string line;
    for (const auto number : numbers)
    {
        char digits[32];
        line.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
        line += ' ';
    }
    line.back() = '\n';
    return line;
}

/// What is refused as an assertion, which is reported, with a sentence that tells what to do.
template <class TStep>
auto RefuseInWords(const std::string& sentence, TStep step)
{
    try
    {
        return step();
    }
    catch (const AssertionFailure&)
    {
        throw Failure(sentence);
    }
}
}

std::string MakeLimitText(const DSSolid& solid, int nFace, double v, double w, const EigenTable& table)
{
    const auto& faces = solid.GetFaceList();
    if (nFace < 0 || static_cast<std::size_t>(nFace) >= faces.size())
    {
        throw Failure("the model has no face " + std::to_string(nFace) + ": it has " +
                      std::to_string(faces.size()) + ", counted from 0");
    }
    std::vector<DSVertex*> vertices;
    const int n = RefuseInWords(
        "the limit surface of face " + std::to_string(nFace) +
            " can be evaluated only with triangles all around its three corners, no boundary there, and "
            "at most one corner that is not on six faces: subdivide a closed model of triangles once "
            "(subdivide-loop), and try again",
        [&] { return CollectPatch(*faces[static_cast<std::size_t>(nFace)], vertices); });
    std::vector<std::uint32_t> ids;
    std::vector<smVec3d> points;
    for (const DSVertex* pVertex : vertices)
    {
        ids.push_back(pVertex->GetID());
        points.push_back(pVertex->GetPosition());
    }
    const EigenData& data = table.Get(n);
    const LimitSample sample = RefuseInWords("there is no point at this V and W: take each from 0 to 1, not "
                                             "both 0, and where they are so, values a little beside these",
                                             [&] { return LimitSample(data, v, w); });
    const smVec3d point = LimitPatch(data, points).EvalEigenPatch(sample);
    return JoinNumbers(std::vector<int>{n}) + JoinNumbers(ids) + JoinNumbers(sample.GetWeights()) +
           JoinNumbers(std::vector<double>{point.x, point.y, point.z});
}
}

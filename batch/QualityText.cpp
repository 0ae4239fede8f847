#include "QualityText.h"
#include "Assert.h"
#include "DSBrep.h"
#include "Failure.h"
#include "IATriangleQualityCommand.h"
#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

namespace tessarine
{
namespace
{
double QualityOf(const DSFace& face, std::size_t number)
{
    ASSERT(!face.GetLoopList().empty());
    const DSHalfEdge* h = face.GetLoopList()[0]->GetHalfEdge();
    if (h->GetNext()->GetNext()->GetNext() != h || h->GetNext() == h)
    {
        throw Failure("face " + std::to_string(number) +
                      " does not have three corners: the quality is that of a triangle mesh");
    }
    const double quality =
        TriangleQuality(h->GetVertex()->GetPosition(), h->GetNext()->GetVertex()->GetPosition(),
                        h->GetPrev()->GetVertex()->GetPosition());
    return std::isnan(quality) ? std::numeric_limits<double>::infinity() : quality;
}

double MedianOf(const std::vector<double>& sorted)
{
    const std::size_t middle = sorted.size() / 2;
    return sorted.size() % 2 == 1 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2.0;
}

std::string LineOf(double value)
{
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    return std::string(digits, end) + '\n';
}
}

std::string MakeQualityText(const DSSolid& solid)
{
    std::vector<double> qualities;
    for (const DSFace* face : solid.GetFaceList())
    {
        ASSERT(face != nullptr);
        qualities.push_back(QualityOf(*face, qualities.size() + 1));
    }
    if (qualities.empty())
    {
        throw Failure("the model has no face to measure");
    }
    const double sum = std::accumulate(qualities.begin(), qualities.end(), 0.0);
    std::sort(qualities.begin(), qualities.end());
    return LineOf(qualities.front()) + LineOf(MedianOf(qualities)) +
           LineOf(sum / static_cast<double>(qualities.size())) + LineOf(qualities.back());
}
}

#include "UnitCubeFit.h"
#include "Failure.h"
#include <algorithm>
#include <cmath>

namespace tessarine
{
namespace
{
/// The values of one coordinate lie from smallest to largest.
struct Range
{
    float smallest = 0.0F;
    float largest = 0.0F;
    bool isFinite = true; ///< every value; one that is no number would widen nothing

    void StartAt(double value) { smallest = largest = static_cast<float>(value); }
    void Widen(double value)
    {
        isFinite = isFinite && std::isfinite(value);
        if (value > largest)
        {
            largest = static_cast<float>(value);
        }
        if (value < smallest)
        {
            smallest = static_cast<float>(value);
        }
    }
    float GetCentre() const { return (largest + smallest) / 2; }
    float GetExtent() const { return largest - smallest; }
};

struct Box
{
    Range x;
    Range y;
    Range z;

    explicit Box(const ElementList<DSVertex>& vertices)
    {
        bool isFirst = true;
        for (const DSVertex* pVertex : vertices)
        {
            if (pVertex == nullptr)
            {
                continue;
            }
            const smVec3d& position = pVertex->GetPosition();
            if (isFirst)
            {
                x.StartAt(position.x);
                y.StartAt(position.y);
                z.StartAt(position.z);
                isFirst = false;
            }
            x.Widen(position.x);
            y.Widen(position.y);
            z.Widen(position.z);
        }
    }
    bool IsFinite() const { return x.isFinite && y.isFinite && z.isFinite; }
    float GetLargestExtent() const { return std::max({x.GetExtent(), y.GetExtent(), z.GetExtent()}); }
};

double MoveAndScale(double value, float centre, float scale)
{
    const auto difference = static_cast<float>(value - centre);
    return static_cast<double>(difference * scale);
}
}

UnitCubeFit::UnitCubeFit(const DSSolid& solid)
{
    const Box box(solid.GetVertexList());
    m_fCentre[0] = box.x.GetCentre();
    m_fCentre[1] = box.y.GetCentre();
    m_fCentre[2] = box.z.GetCentre();
    const float extent = box.GetLargestExtent();
    if (extent != 0.0F)
    {
        m_fScale = 2.0F / extent;
    }
    const bool isFinite = box.IsFinite() && std::isfinite(m_fCentre[0]) && std::isfinite(m_fCentre[1]) &&
                          std::isfinite(m_fCentre[2]) && std::isfinite(extent) && std::isfinite(m_fScale);
    if (!isFinite)
    {
        throw Failure("The model's coordinates are too large or too small to be scaled into the unit cube, "
                      "or no numbers; "
                      "bring them nearer to 1 in the program that made the model.");
    }
}

void UnitCubeFit::Apply(DSSolid& solid) const
{
    for (DSVertex* pVertex : solid.GetVertexList())
    {
        if (pVertex != nullptr)
        {
            const smVec3d& old = pVertex->GetPosition();
            pVertex->SetPosition(MoveAndScale(old.x, m_fCentre[0], m_fScale),
                                 MoveAndScale(old.y, m_fCentre[1], m_fScale),
                                 MoveAndScale(old.z, m_fCentre[2], m_fScale));
        }
    }
}
}

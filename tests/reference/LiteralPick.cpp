#include "LiteralPick.h"
#include "DSBrep.h"
#include "MANSceneManager.h"
#include "Open3DCamera.h"
#include <cmath>
#include <vector>

namespace tessarine
{
namespace
{
using Vector = smVec3d;

class LiteralPick
{
public:
    LiteralPick(const Open3DCamera& camera, int x, int y)
        : m_Eye(camera.GetPosition()), m_Far(camera.GetFar()), m_View(Unit(camera.GetViewVector()))
    {
        const Vector side = Unit(camera.GetUp().Cross(Vector(-m_View.x, -m_View.y, -m_View.z)));
        const Vector up = Unit(camera.GetUp());
        const double nx = 2.0 * x / camera.GetWidth() - 1;
        const double ny = 1 - 2.0 * y / camera.GetHeight();
        const double h = camera.GetNear() * std::tan(camera.GetFovy() * (3.1415926535 / 180.0) / 2);
        const double w = camera.GetAspect() * h;
        m_Ray = m_Eye + m_View * camera.GetNear() + up * h * ny + side * w * nx - m_Eye;
    }

    void PickGroup(const MANSceneGroup& group)
    {
        if (!group.IsVisible())
        {
            return;
        }
        for (const MANSceneNode* pChild : group.GetChildren())
        {
            if ((pChild->GetID() & 0xF0000000) == 0xC0000000)
            {
                PickGroup(static_cast<const MANSceneGroup&>(*pChild));
                continue;
            }
            const auto& leaf = static_cast<const MANSceneLeaf&>(*pChild);
            if (leaf.IsVisible() && leaf.GetSolid()->IsVisible())
            {
                PickSolid(*leaf.GetSolid());
            }
        }
    }

    LiteralHit Find(std::uint32_t kind) const
    {
        if (m_pFace == nullptr)
        {
            return {};
        }
        switch (kind)
        {
        case 0x80000000: return {true, FindEdge()};
        case 0xC0000000: return {true, m_pFace->GetID()};
        case 0: return {true, FindVertex()};
        default: return {true, m_pFace->GetSolid()->GetID()};
        }
    }

private:
    static Vector Unit(const Vector& v) { return v / std::sqrt(v.Dot(v)); }

    static std::vector<const DSHalfEdge*> CornersOf(const DSFace& face)
    {
        std::vector<const DSHalfEdge*> corners;
        for (const DSLoop* pLoop : face.GetLoopList())
        {
            const DSHalfEdge* pCorner = pLoop->GetHalfEdge();
            do
            {
                corners.push_back(pCorner);
                pCorner = pCorner->GetNext();
            } while (pCorner != pLoop->GetHalfEdge());
        }
        return corners;
    }

    static const Vector& StartOf(const DSHalfEdge* h) { return h->GetVertex()->GetPosition(); }
    static const Vector& EndOf(const DSHalfEdge* h) { return StartOf(h->GetNext()); }

    /// A corner on the ray makes the whole face a miss, whichever loop has it.
    bool GoesThrough(const DSFace& face) const
    {
        double sum = 0;
        bool goesThrough = false;
        for (const DSLoop* pLoop : face.GetLoopList())
        {
            if (!AddAngles(*pLoop, sum))
            {
                return false;
            }
            goesThrough = goesThrough || (sum - 2 * 3.1415926535) * (sum - 2 * 3.1415926535) < 1e-6;
        }
        return goesThrough;
    }

    bool AddAngles(const DSLoop& loop, double& sum) const
    {
        const DSHalfEdge* h = loop.GetHalfEdge();
        do
        {
            Vector a = (StartOf(h) - m_Eye).Cross(m_Ray);
            Vector b = (EndOf(h) - m_Eye).Cross(m_Ray);
            const double lengthA = a.Length();
            const double lengthB = b.Length();
            if (!(lengthA > smVec3d_zero) || !(lengthB > smVec3d_zero))
            {
                return false;
            }
            a = Vector(a.x / lengthA, a.y / lengthA, a.z / lengthA);
            b = Vector(b.x / lengthB, b.y / lengthB, b.z / lengthB);
            const double c = a.Dot(b);
            double angle = c > 1 ? 0 : (c < -1 ? 180.0 : std::acos(c));
            if (a.Cross(b).Dot(m_Ray) > 0)
            {
                angle = -angle;
            }
            sum = sum + angle;
            h = h->GetNext();
        } while (h != loop.GetHalfEdge());
        return true;
    }

    void PickSolid(const DSSolid& solid)
    {
        double best = m_Far;
        for (DSFace* pFace : solid.GetFaceList())
        {
            if (!GoesThrough(*pFace))
            {
                continue;
            }
            DSFace copy = *pFace; // its own normal stays
            const Vector n = copy.CalcNormal();
            const double s = (copy.CalcCentroid() - m_Eye).Dot(n) / m_Ray.Dot(n);
            const double depth = m_Ray.Dot(m_View) * s;
            if (depth < best)
            {
                m_pFace = pFace;
                best = depth;
            }
        }
    }

    double DistanceOf(const Vector& point) const
    {
        const double r = (point - m_Eye).Dot(m_Ray) / m_Ray.Dot(m_Ray);
        return ((m_Eye - point) + m_Ray * r).Length();
    }

    double DistanceOf(const Vector& A, const Vector& B) const
    {
        const Vector S = B - A;
        const double a = m_Ray.Dot(m_Ray);
        const double c = S.Dot(S);
        const double b = m_Ray.Dot(S);
        const double e = m_Ray.Dot(m_Eye - A);
        const double f = S.Dot(m_Eye - A);
        const double den = b * b - a * c;
        const double s = (b * e - a * f) / den;
        const double t = (c * e - b * f) / den;
        if (s < 0)
        {
            return DistanceOf(A);
        }
        return s > 1 ? DistanceOf(B) : ((m_Eye + m_Ray * t) - A - S * s).Length();
    }

    std::uint32_t FindVertex() const
    {
        double best = 100000.0;
        std::uint32_t id = 0;
        for (const DSHalfEdge* h : CornersOf(*m_pFace))
        {
            const double distance = DistanceOf(StartOf(h));
            if (distance < best)
            {
                best = distance;
                id = h->GetVertex()->GetID();
            }
        }
        return id;
    }

    std::uint32_t FindEdge() const
    {
        double best = 100000.0;
        std::uint32_t id = 0;
        for (const DSHalfEdge* h : CornersOf(*m_pFace))
        {
            const double distance = DistanceOf(StartOf(h), EndOf(h));
            if (distance < best)
            {
                best = distance;
                id = h->GetEdge()->GetID();
            }
        }
        return id;
    }

    Vector m_Eye;
    double m_Far;
    Vector m_View;
    Vector m_Ray;
    const DSFace* m_pFace = nullptr;
};
}

LiteralHit PickLiterally(const MANSceneManager& scene, const Open3DCamera& camera, std::uint32_t kind, int x,
                         int y)
{
    LiteralPick pick(camera, x, y);
    pick.PickGroup(*scene.GetRootGroup());
    return pick.Find(kind);
}
}

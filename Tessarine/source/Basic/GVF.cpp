#include "GVF.h"
#include "Assert.h"
#include "Console.h"
#include "Platform.h"
#include "pgDmatrix.h"
#include <algorithm>
#include <string>

namespace tessarine
{
namespace
{
constexpr int kNumberWidth = 5;
constexpr int kNumbersOnALine = 15;

/// The flow in the making; matrices are indexed by y, x.
class VectorFlow
{
public:
    VectorFlow(int n, int m, double mu)
        : m_nColumns(n),
          m_nRows(m),
          m_fMu(mu),
          m_EdgeMap(0, m - 1, 0, n - 1),
          m_U(m_EdgeMap),
          m_V(m_EdgeMap),
          m_Magnitude(m_EdgeMap),
          m_PullX(m_EdgeMap),
          m_PullY(m_EdgeMap),
          m_LaplacianU(m_EdgeMap),
          m_LaplacianV(m_EdgeMap)
    {
    }

    void Normalize(const double* edgeMap)
    {
        double highest = -1.0e10;
        double lowest = 1.0e10;
        const int count = m_nColumns * m_nRows;
        for (int i = 0; i < count; ++i)
        {
            highest = std::max(highest, edgeMap[i]);
            lowest = std::min(lowest, edgeMap[i]);
        }
        if (highest == lowest)
        {
            GetPlatform().ShowMessage("error", "Edge map is a constant image.");
        }
        ForEachSample([&](int y, int x)
                      { m_EdgeMap(y, x) = (edgeMap[x + y * m_nColumns] - lowest) / (highest - lowest); });
    }

    /// Across the border there is no derivative, nor in the corners any at all: they stay zero.
    void TakeGradient()
    {
        ForEachSample(
            [this](int y, int x)
            {
                const bool isAtSide = x == 0 || x == m_nColumns - 1;
                const bool isAtEnd = y == 0 || y == m_nRows - 1;
                const double gradientX = isAtSide ? 0.0 : 0.5 * (m_EdgeMap(y, x + 1) - m_EdgeMap(y, x - 1));
                const double gradientY = isAtEnd ? 0.0 : 0.5 * (m_EdgeMap(y + 1, x) - m_EdgeMap(y - 1, x));
                const double magnitude = gradientX * gradientX + gradientY * gradientY;
                m_Magnitude(y, x) = magnitude;
                m_PullX(y, x) = magnitude * gradientX;
                m_PullY(y, x) = magnitude * gradientY;
                m_U(y, x) = gradientX;
                m_V(y, x) = gradientY;
            });
    }

    void Spread()
    {
        ForEachSample(
            [this](int y, int x)
            {
                m_LaplacianU(y, x) = GetLaplacian(m_U, y, x);
                m_LaplacianV(y, x) = GetLaplacian(m_V, y, x);
            });
        ForEachSample(
            [this](int y, int x)
            {
                const double keep = 1.0 - m_Magnitude(y, x);
                m_U(y, x) = m_fMu * m_LaplacianU(y, x) * 4.0 + keep * m_U(y, x) + m_PullX(y, x);
                m_V(y, x) = m_fMu * m_LaplacianV(y, x) * 4.0 + keep * m_V(y, x) + m_PullY(y, x);
            });
    }

    void CopyTo(double* u, double* v) const
    {
        ForEachSample(
            [&](int y, int x)
            {
                u[x + y * m_nColumns] = m_U(y, x);
                v[x + y * m_nColumns] = m_V(y, x);
            });
    }

private:
    template <class TAction>
    void ForEachSample(TAction action) const
    {
        for (int y = 0; y < m_nRows; ++y)
        {
            for (int x = 0; x < m_nColumns; ++x)
            {
                action(y, x);
            }
        }
    }

    double GetLaplacian(const pgDmatrix& flow, int y, int x) const
    {
        const bool isAtSide = x == 0 || x == m_nColumns - 1;
        const bool isAtEnd = y == 0 || y == m_nRows - 1;
        const int innerX = x == 0 ? 1 : x - 1;
        const int innerY = y == 0 ? 1 : y - 1;
        if (isAtSide && isAtEnd)
        {
            return (flow(y, innerX) + flow(innerY, x)) * 0.5 - flow(y, x);
        }
        if (isAtSide)
        {
            return (2.0 * flow(y, innerX) + flow(y - 1, x) + flow(y + 1, x)) * 0.25 - flow(y, x);
        }
        if (isAtEnd)
        {
            return (2.0 * flow(innerY, x) + flow(y, x - 1) + flow(y, x + 1)) * 0.25 - flow(y, x);
        }
        return (flow(y, x - 1) + flow(y, x + 1) + flow(y - 1, x) + flow(y + 1, x)) * 0.25 - flow(y, x);
    }

    int m_nColumns;
    int m_nRows;
    double m_fMu;
    pgDmatrix m_EdgeMap;
    pgDmatrix m_U;
    pgDmatrix m_V;
    pgDmatrix m_Magnitude; ///< of the gradient, squared
    pgDmatrix m_PullX;     ///< towards the gradient
    pgDmatrix m_PullY;
    pgDmatrix m_LaplacianU;
    pgDmatrix m_LaplacianV;
};

void PrintIteration(int iteration)
{
    const std::string number = std::to_string(iteration);
    const auto blanks = static_cast<std::size_t>(std::max(0, kNumberWidth - static_cast<int>(number.size())));
    DebugConsole() << std::string(blanks, ' ') << number << (iteration % kNumbersOnALine == 0 ? "\n" : "");
}
}

void GVF(int n, int m, const double* edgeMap, double* u, double* v, double mu, int iterations)
{
    ASSERT(n >= 2 && m >= 2);
    VectorFlow flow(n, m, mu);
    flow.Normalize(edgeMap);
    flow.TakeGradient();
    for (int iteration = 1; iteration <= iterations; ++iteration)
    {
        flow.Spread();
        PrintIteration(iteration);
    }
    DebugConsole() << '\n';
    flow.CopyTo(u, v);
}
}

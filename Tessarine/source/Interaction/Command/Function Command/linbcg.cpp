#include "linbcg.h"
#include "Assert.h"
#include "Console.h"
#include "SparseMatrix.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

namespace tessarine
{
namespace
{
using OneBased = std::vector<double>;

double Product(const OneBased& a, const OneBased& b)
{
    double sum = 0.0;
    for (std::size_t i = 1; i < a.size(); ++i)
    {
        sum += a[i] * b[i];
    }
    return sum;
}

/// What the preconditioner makes of a vector: its diagonal is 1.
void Precondition(const OneBased& from, OneBased& to)
{
    constexpr double kDiagonal = 1.0;
    for (std::size_t i = 1; i < from.size(); ++i)
    {
        to[i] = from[i] / kDiagonal;
    }
}

/// direction = factor * direction + step
void Turn(OneBased& direction, double factor, const OneBased& step)
{
    for (std::size_t i = 1; i < direction.size(); ++i)
    {
        direction[i] = factor * direction[i] + step[i];
    }
}

bool CanDivideBy(double value)
{
    return std::isfinite(value) && value != 0.0;
}

/// One solution under way.
class BiconjugateGradients
{
public:
    BiconjugateGradients(const CSparseMatrix& A, const CSparseMatrix& At, const OneBased& b, OneBased& x,
                         int itol)
        : m_A(A),
          m_At(At),
          m_x(x),
          m_nItol(itol),
          m_r(x.size()),
          m_z(x.size()),
          m_zz(x.size()),
          m_p(x.size()),
          m_pp(x.size()),
          m_xNext(x.size())
    {
        m_A.MultiplyVector2(m_x, m_r, GetSize());
        for (std::size_t i = 1; i < m_r.size(); ++i)
        {
            m_r[i] = b[i] - m_r[i];
        }
        m_rr = m_r;
        MeasureStart(b);
    }

    /// @return false where the method breaks down; x and the error stay then
    bool Step(int iter)
    {
        Precondition(m_rr, m_zz);
        const double bknum = Product(m_z, m_rr);
        if (iter == 1)
        {
            m_p = m_z;
            m_pp = m_zz;
        }
        else if (CanDivideBy(m_fBkden))
        {
            Turn(m_p, bknum / m_fBkden, m_z);
            Turn(m_pp, bknum / m_fBkden, m_zz);
        }
        else
        {
            return false;
        }
        m_fBkden = bknum;
        m_A.MultiplyVector2(m_p, m_z, GetSize());
        const double akden = Product(m_z, m_pp);
        if (!CanDivideBy(akden) || !MoveSolution(bknum / akden))
        {
            return false;
        }
        m_At.MultiplyVector2(m_pp, m_zz, GetSize());
        for (std::size_t i = 1; i < m_r.size(); ++i)
        {
            m_r[i] -= m_fAk * m_z[i];
            m_rr[i] -= m_fAk * m_zz[i];
        }
        Precondition(m_r, m_z);
        return true;
    }

    /// @return whether the error can be judged by now
    bool EstimateError(double& err)
    {
        if (m_nItol == 1 || m_nItol == 2)
        {
            err = Norm(m_nItol == 1 ? m_r : m_z) / m_fBnrm;
        }
        return (m_nItol != 3 && m_nItol != 4) || EstimateByMotion(err);
    }

private:
    int GetSize() const { return static_cast<int>(m_x.size()) - 1; }

    double Norm(const OneBased& v) const
    {
        if (m_nItol <= 3)
        {
            return std::sqrt(Product(v, v));
        }
        double largest = 0.0;
        for (std::size_t i = 1; i < v.size(); ++i)
        {
            largest = std::max(largest, std::abs(v[i]));
        }
        return largest;
    }

    void MeasureStart(const OneBased& b)
    {
        if (m_nItol < 1 || m_nItol > 4)
        {
            DebugConsole() << "illegal itol in linbcg\n";
            return;
        }
        if (m_nItol == 1)
        {
            m_fBnrm = Norm(b);
        }
        else
        {
            Precondition(b, m_z);
            m_fBnrm = Norm(m_z);
        }
        Precondition(m_r, m_z);
        m_fZnrm = Norm(m_z);
    }

    /// @return false where a component would be no finite number; nothing moves then
    bool MoveSolution(double ak)
    {
        bool isFinite = true;
        for (std::size_t i = 1; i < m_x.size(); ++i)
        {
            m_xNext[i] = m_x[i] + ak * m_p[i];
            isFinite = isFinite && std::isfinite(m_xNext[i]);
        }
        if (isFinite)
        {
            m_x.swap(m_xNext);
            m_fAk = ak;
        }
        return isFinite;
    }

    bool EstimateByMotion(double& err)
    {
        constexpr double kLeastChange = 1e-14;
        const double zm1nrm = m_fZnrm;
        m_fZnrm = Norm(m_z);
        if (!(std::abs(zm1nrm - m_fZnrm) > kLeastChange * m_fZnrm))
        {
            err = m_fZnrm / m_fBnrm;
            return false;
        }
        const double dxnrm = std::abs(m_fAk) * Norm(m_p);
        err = m_fZnrm / std::abs(zm1nrm - m_fZnrm) * dxnrm;
        const double xnrm = Norm(m_x);
        if (err <= 0.5 * xnrm)
        {
            err /= xnrm;
            return true;
        }
        err = m_fZnrm / m_fBnrm;
        return false;
    }

    const CSparseMatrix& m_A;
    const CSparseMatrix& m_At;
    OneBased& m_x;
    int m_nItol;
    OneBased m_r;
    OneBased m_rr;
    OneBased m_z;
    OneBased m_zz;
    OneBased m_p;
    OneBased m_pp;
    OneBased m_xNext;
    double m_fBnrm = 0.0;
    double m_fZnrm = 0.0;
    double m_fBkden = 0.0;
    double m_fAk = 0.0;
};

void SayProgress(int iter, double err)
{
    constexpr int kStepsOfALine = 100;
    if (iter % kStepsOfALine == 0)
    {
        std::array<char, 400> text{};
        std::snprintf(text.data(), text.size(), "iter=%6d err=%12.6lf\n", iter, err);
        DebugConsole() << text.data();
    }
}
}

bool linbcg(const CSparseMatrix& A, const CSparseMatrix& At, int n, const std::vector<double>& b,
            std::vector<double>& x, int itol, double tol, int itmax, int& iter, double& err)
{
    ASSERT(n >= 0 && A.GetRowCount() == n && A.GetColumnCount() == n);
    ASSERT(At.GetRowCount() == n && At.GetColumnCount() == n);
    ASSERT(b.size() == static_cast<std::size_t>(n) + 1 && x.size() == b.size());
    ASSERT(itmax < std::numeric_limits<int>::max());
    iter = 0;
    err = 0.0;
    BiconjugateGradients method(A, At, b, x, itol);
    while (iter <= itmax)
    {
        ++iter;
        if (!method.Step(iter))
        {
            DebugConsole() << "linbcg cannot go on behind step " << iter - 1 << '\n';
            return false;
        }
        if (!method.EstimateError(err))
        {
            continue;
        }
        SayProgress(iter, err);
        if (err <= tol)
        {
            break;
        }
    }
    return true;
}

void SayEstimate(int iter, double err)
{
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "Iteration Step = %d, Estimated Error = %12.10lf\n", iter, err);
    DebugConsole() << text.data();
}
}

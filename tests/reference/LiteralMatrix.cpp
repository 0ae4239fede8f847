#include "LiteralMatrix.h"
#include <algorithm>
#include <cmath>

namespace tessarine
{
bool MultiplyLiterally(const CSparseMatrix& a, const CSparseMatrix& b, CSparseMatrix& result)
{
    CSparseMatrix transposed;
    b.Transpose(transposed);
    result.SetSize(a.GetRowCount(), b.GetColumnCount());
    for (int i = 0; i < a.GetRowCount(); ++i)
    {
        for (int j = 0; j < transposed.GetRowCount(); ++j)
        {
            double sum = 0.0;
            bool isHit = false;
            for (std::size_t k = 0; k < a.GetColumnsOf(i).size(); ++k)
            {
                const std::vector<int>& columns = transposed.GetColumnsOf(j);
                const auto found = std::find(columns.begin(), columns.end(), a.GetColumnsOf(i)[k]);
                if (found != columns.end())
                {
                    sum += a.GetValuesOf(i)[k] *
                           transposed.GetValuesOf(j)[static_cast<std::size_t>(found - columns.begin())];
                    isHit = true;
                }
            }
            if (isHit)
            {
                result.SetValue(i, j, sum);
            }
        }
    }
    return true;
}

bool AddLiterally(const CSparseMatrix& a, const CSparseMatrix& b, double sign, CSparseMatrix& result)
{
    result.SetSize(a.GetRowCount(), a.GetColumnCount());
    for (int i = 0; i < a.GetRowCount(); ++i)
    {
        for (int j = 0; j < a.GetColumnCount(); ++j)
        {
            double first = 0.0;
            double second = 0.0;
            a.GetValue(i, j, first);
            b.GetValue(i, j, second);
            const double sum = sign > 0 ? first + second : first - second;
            if (std::abs(sum) >= a.GetEpsilon())
            {
                result.SetValue(i, j, sum);
            }
        }
    }
    return true;
}

std::vector<double> MultiplyVectorLiterally(const CSparseMatrix& a, const std::vector<double>& x)
{
    std::vector<double> y(static_cast<std::size_t>(a.GetRowCount()) + 1);
    for (int i = 0; i < a.GetRowCount(); ++i)
    {
        double sum = 0.0;
        for (std::size_t k = 0; k < a.GetColumnsOf(i).size(); ++k)
        {
            sum += a.GetValuesOf(i)[k] * x[static_cast<std::size_t>(a.GetColumnsOf(i)[k]) + 1];
        }
        y[static_cast<std::size_t>(i) + 1] = sum;
    }
    return y;
}

namespace
{
double Dot(const std::vector<double>& a, const std::vector<double>& b)
{
    double sum = 0.0;
    for (std::size_t i = 1; i < a.size(); ++i)
    {
        sum += a[i] * b[i];
    }
    return sum;
}

double NormOf(const std::vector<double>& v, int itol)
{
    double largest = 0.0;
    for (std::size_t i = 1; i < v.size(); ++i)
    {
        largest = std::max(largest, std::abs(v[i]));
    }
    return itol <= 3 ? std::sqrt(Dot(v, v)) : largest;
}
}

void SolveLiterally(const CSparseMatrix& a, const CSparseMatrix& transposed, const std::vector<double>& b,
                    std::vector<double>& x, int itol, double tol, int itmax, int& iter, double& err)
{
    const std::size_t n = b.size() - 1;
    std::vector<double> r = MultiplyVectorLiterally(a, x);
    for (std::size_t i = 1; i <= n; ++i)
    {
        r[i] = b[i] - r[i];
    }
    std::vector<double> rr = r;
    const double bnrm = NormOf(b, itol);
    std::vector<double> z = r;
    double znrm = NormOf(z, itol);
    std::vector<double> p(n + 1);
    std::vector<double> pp(n + 1);
    double bkden = 0.0;
    iter = 0;
    while (iter <= itmax)
    {
        ++iter;
        std::vector<double> zz = rr;
        const double bknum = Dot(z, rr);
        for (std::size_t i = 1; i <= n; ++i)
        {
            p[i] = iter == 1 ? z[i] : bknum / bkden * p[i] + z[i];
            pp[i] = iter == 1 ? zz[i] : bknum / bkden * pp[i] + zz[i];
        }
        bkden = bknum;
        z = MultiplyVectorLiterally(a, p);
        const double ak = bknum / Dot(z, pp);
        zz = MultiplyVectorLiterally(transposed, pp);
        for (std::size_t i = 1; i <= n; ++i)
        {
            x[i] = x[i] + ak * p[i];
            r[i] = r[i] - ak * z[i];
            rr[i] = rr[i] - ak * zz[i];
        }
        z = r;
        if (itol == 1 || itol == 2)
        {
            err = NormOf(r, itol) / bnrm;
        }
        else
        {
            const double before = znrm;
            znrm = NormOf(z, itol);
            if (std::abs(before - znrm) > 1e-14 * znrm)
            {
                err = znrm / std::abs(before - znrm) * (std::abs(ak) * NormOf(p, itol));
            }
            else
            {
                err = znrm / bnrm;
                continue;
            }
            const double xnrm = NormOf(x, itol);
            if (err > 0.5 * xnrm)
            {
                err = znrm / bnrm;
                continue;
            }
            err = err / xnrm;
        }
        if (err <= tol)
        {
            break;
        }
    }
}
}

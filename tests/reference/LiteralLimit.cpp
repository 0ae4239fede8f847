#include "LiteralLimit.h"
#include "Assert.h"
#include <cmath>

namespace tessarine
{
namespace
{
using std::pow;

void ProjectLiterally(std::vector<smVec3d>& cp, const std::vector<smVec3d>& c, int n, const EigenData& data,
                      Matrix& matrix)
{
    const int k = n + 6;
    for (int i = 0; i < k; ++i)
    {
        smVec3d sum;
        for (int j = 0; j < k; ++j)
        {
            const double value = data.m_InvEigenvectors[static_cast<std::size_t>(i + k * j)];
            sum = sum + value * c[static_cast<std::size_t>(j)];
            matrix.SetElement(i, j, value);
        }
        cp[static_cast<std::size_t>(i)] = sum;
    }
}

smVec3d EvalEigenPatchLiterally(double v, double w, int order, const EigenData& data,
                                const std::vector<smVec3d>& cp, Matrix& column)
{
    const double ofV = -std::log(v) / std::log(2.0);
    const double ofW = -std::log(w) / std::log(2.0);
    const int n = static_cast<int>(std::floor(ofV < ofW ? ofV : ofW));
    const double s = pow(2.0, n - 1);
    v = v * s;
    w = w * s;
    std::size_t k = 0;
    if (v > 0.5)
    {
        k = 0;
        v = 2.0 * v - 1.0;
        w = 2.0 * w;
    }
    else if (w > 0.5)
    {
        k = 2;
        v = 2.0 * v;
        w = 2.0 * w - 1.0;
    }
    else
    {
        k = 1;
        v = 1.0 - 2.0 * v;
        w = 1.0 - 2.0 * w;
    }
    smVec3d result;
    for (int i = 0; i < order; ++i)
    {
        double b[12];
        for (int j = 0; j < 12; ++j)
        {
            b[j] = data.m_Coefficients[k][static_cast<std::size_t>(i + order * j)];
        }
        const double e = EvalBoxSplineLiterally(b, v, w);
        const double p = pow(data.m_Eigenvalues[static_cast<std::size_t>(i)], n - 1) * e;
        result = result + p * cp[static_cast<std::size_t>(i)];
        column.SetElement(i, 0, p);
    }
    return result;
}
}

double EvalBoxSplineLiterally(const double* b, double v, double w)
{
    const double u = 1.0 - v - w;
    const double basis[12] = {
        (pow(u, 4) + 2.0 * pow(u, 3) * v) / 12.0,
        (pow(u, 4) + 2.0 * pow(u, 3) * w) / 12.0,
        (pow(u, 4) + 2.0 * pow(u, 3) * w + 6.0 * pow(u, 3) * v + 6.0 * pow(u, 2) * v * w +
         12.0 * pow(u, 2) * pow(v, 2) + 6.0 * u * pow(v, 2) * w + 6.0 * u * pow(v, 3) + 2.0 * pow(v, 3) * w +
         pow(v, 4)) /
            12.0,
        (6.0 * pow(u, 4) + 24.0 * pow(u, 3) * w + 24.0 * pow(u, 2) * pow(w, 2) + 8.0 * u * pow(w, 3) +
         pow(w, 4) + 24.0 * pow(u, 3) * v + 60.0 * pow(u, 2) * v * w + 36.0 * u * v * pow(w, 2) +
         6.0 * v * pow(w, 3) + 24.0 * pow(u, 2) * pow(v, 2) + 36.0 * u * pow(v, 2) * w +
         12.0 * pow(v, 2) * pow(w, 2) + 8.0 * u * pow(v, 3) + 6.0 * pow(v, 3) * w + pow(v, 4)) /
            12.0,
        (pow(u, 4) + 6.0 * pow(u, 3) * w + 12.0 * pow(u, 2) * pow(w, 2) + 6.0 * u * pow(w, 3) + pow(w, 4) +
         2.0 * pow(u, 3) * v + 6.0 * pow(u, 2) * v * w + 6.0 * u * v * pow(w, 2) + 2.0 * v * pow(w, 3)) /
            12.0,
        (2.0 * u * pow(v, 3) + pow(v, 4)) / 12.0,
        (pow(u, 4) + 6.0 * pow(u, 3) * w + 12.0 * pow(u, 2) * pow(w, 2) + 6.0 * u * pow(w, 3) + pow(w, 4) +
         8.0 * pow(u, 3) * v + 36.0 * pow(u, 2) * v * w + 36.0 * u * v * pow(w, 2) + 8.0 * v * pow(w, 3) +
         24.0 * pow(u, 2) * pow(v, 2) + 60.0 * u * pow(v, 2) * w + 24.0 * pow(v, 2) * pow(w, 2) +
         24.0 * u * pow(v, 3) + 24.0 * pow(v, 3) * w + 6.0 * pow(v, 4)) /
            12.0,
        (pow(u, 4) + 8.0 * pow(u, 3) * w + 24.0 * pow(u, 2) * pow(w, 2) + 24.0 * u * pow(w, 3) +
         6.0 * pow(w, 4) + 6.0 * pow(u, 3) * v + 36.0 * pow(u, 2) * v * w + 60.0 * u * v * pow(w, 2) +
         24.0 * v * pow(w, 3) + 12.0 * pow(u, 2) * pow(v, 2) + 36.0 * u * pow(v, 2) * w +
         24.0 * pow(v, 2) * pow(w, 2) + 6.0 * u * pow(v, 3) + 8.0 * pow(v, 3) * w + pow(v, 4)) /
            12.0,
        (2.0 * u * pow(w, 3) + pow(w, 4)) / 12.0,
        (2.0 * pow(v, 3) * w + pow(v, 4)) / 12.0,
        (2.0 * u * pow(w, 3) + pow(w, 4) + 6.0 * u * v * pow(w, 2) + 6.0 * v * pow(w, 3) +
         6.0 * u * pow(v, 2) * w + 12.0 * pow(v, 2) * pow(w, 2) + 2.0 * u * pow(v, 3) + 6.0 * pow(v, 3) * w +
         pow(v, 4)) /
            12.0,
        (2.0 * v * pow(w, 3) + pow(w, 4)) / 12.0,
    };
    double sum = 0.0;
    for (int j = 0; j < 12; ++j)
    {
        sum = sum + b[j] * basis[j];
    }
    return sum;
}

smVec3d EvalLimitPointLiterally(const std::vector<smVec3d>& c, double v, double w, const EigenData& data,
                                Matrix& weights)
{
    const int order = data.GetOrder();
    Matrix matrix(order, order);
    std::vector<smVec3d> cp(c.size());
    ProjectLiterally(cp, c, data.GetValence(), data, matrix);
    Matrix column(order, 1);
    const smVec3d result = EvalEigenPatchLiterally(v, w, order, data, cp, column);
    matrix = matrix.Transpose();
    weights.Resize(order, 1);
    weights = matrix * column;
    return result;
}
}

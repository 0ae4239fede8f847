#include "SparseMatrix.h"
#include "Assert.h"
#include "Console.h"
#include "Platform.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

namespace tessarine
{
namespace
{
constexpr std::size_t kLongRow = 32;
constexpr std::size_t kNoEntry = static_cast<std::size_t>(-1);

template <class T>
std::size_t PlaceOf(const std::vector<T>& list, T value)
{
    const auto found = std::find(list.begin(), list.end(), value);
    return found == list.end() ? kNoEntry : static_cast<std::size_t>(found - list.begin());
}

std::size_t AsIndex(int number)
{
    return static_cast<std::size_t>(number);
}
}

void CSparseMatrix::SetSize(int nRows, int nCols)
{
    ASSERT(nRows >= 0 && nCols >= 0);
    Clear();
    m_ColIndex.resize(AsIndex(nRows));
    m_Values.resize(AsIndex(nRows));
    m_nRows = nRows;
    m_nCols = nCols;
}

void CSparseMatrix::Clear()
{
    *this = CSparseMatrix();
}

const std::vector<int>& CSparseMatrix::GetColumnsOf(int nRow) const
{
    ASSERT(IsValidRow(nRow));
    return m_ColIndex[AsIndex(nRow)];
}

const std::vector<double>& CSparseMatrix::GetValuesOf(int nRow) const
{
    ASSERT(IsValidRow(nRow));
    return m_Values[AsIndex(nRow)];
}

/// kNoEntry where there is none.
std::size_t CSparseMatrix::FindEntry(int nRow, int nCol) const
{
    if (!IsValidRow(nRow))
    {
        return kNoEntry;
    }
    const std::vector<int>& columns = m_ColIndex[AsIndex(nRow)];
    if (columns.size() <= kLongRow)
    {
        return PlaceOf(columns, nCol);
    }
    const ColumnPlaces& places = m_LongRows.at(nRow);
    const auto found = places.find(nCol);
    return found == places.end() ? kNoEntry : found->second;
}

void CSparseMatrix::Append(int nRow, int nCol, double fValue)
{
    ASSERT(nCol >= 0 && nCol < m_nCols);
    m_Compressed.isValid = false;
    std::vector<int>& columns = m_ColIndex[AsIndex(nRow)];
    columns.push_back(nCol);
    m_Values[AsIndex(nRow)].push_back(fValue);
    if (columns.size() > kLongRow)
    {
        ColumnPlaces& places = m_LongRows[nRow];
        for (std::size_t i = places.size(); i < columns.size(); ++i)
        {
            places.emplace(columns[i], i);
        }
    }
}

bool CSparseMatrix::HasEntry(int nRow, int nCol) const
{
    return FindEntry(nRow, nCol) != kNoEntry;
}

bool CSparseMatrix::SetValue(int nRow, int nCol, double fValue)
{
    if (const std::size_t place = FindEntry(nRow, nCol); place != kNoEntry)
    {
        m_Values[AsIndex(nRow)][place] = fValue;
        m_Compressed.isValid = false;
        return false;
    }
    if (!IsValidRow(nRow))
    {
        ShowMessage("Error: Invalid Row Index");
        return false;
    }
    Append(nRow, nCol, fValue);
    return true;
}

void CSparseMatrix::AddValue(int nRow, int nCol, double fValue)
{
    ASSERT(IsValidRow(nRow));
    if (const std::size_t place = FindEntry(nRow, nCol); place != kNoEntry)
    {
        m_Values[AsIndex(nRow)][place] += fValue;
        m_Compressed.isValid = false;
        return;
    }
    Append(nRow, nCol, 0.0 + fValue); // -0 becomes 0, as in a sum
}

void CSparseMatrix::DivideBy(double fDivisor)
{
    m_Compressed.isValid = false;
    for (std::vector<double>& row : m_Values)
    {
        for (double& value : row)
        {
            value /= fDivisor;
        }
    }
}

bool CSparseMatrix::GetValue(int nRow, int nCol, double& fValue) const
{
    const std::size_t place = FindEntry(nRow, nCol);
    fValue = place == kNoEntry ? 0.0 : m_Values[AsIndex(nRow)][place];
    return true;
}

bool CSparseMatrix::RemoveEntry(int nRow, int nCol)
{
    const std::size_t place = FindEntry(nRow, nCol);
    if (place == kNoEntry)
    {
        return false;
    }
    std::vector<int>& columns = m_ColIndex[AsIndex(nRow)];
    std::vector<double>& values = m_Values[AsIndex(nRow)];
    columns.erase(columns.begin() + static_cast<std::ptrdiff_t>(place));
    values.erase(values.begin() + static_cast<std::ptrdiff_t>(place));
    m_Compressed.isValid = false;
    m_LongRows.erase(nRow);
    if (columns.size() > kLongRow)
    {
        ColumnPlaces& places = m_LongRows[nRow];
        for (std::size_t i = 0; i < columns.size(); ++i)
        {
            places.emplace(columns[i], i);
        }
    }
    return true;
}

bool CSparseMatrix::HasValue(double fValue) const
{
    return std::any_of(m_Values.begin(), m_Values.end(),
                       [fValue](const std::vector<double>& row) { return PlaceOf(row, fValue) != kNoEntry; });
}

bool CSparseMatrix::Multiply(const CSparseMatrix& other, CSparseMatrix& result) const
{
    if (m_nCols != other.m_nRows)
    {
        ShowMessage("Error: Matrix Multiply Condition Not Favored");
        return false;
    }
    CSparseMatrix product(m_nRows, other.m_nCols);
    std::vector<double> sums(AsIndex(other.m_nCols));
    std::vector<bool> isHit(AsIndex(other.m_nCols));
    std::vector<int> hits;
    for (int row = 0; row < m_nRows; ++row)
    {
        const std::vector<int>& columns = m_ColIndex[AsIndex(row)];
        for (std::size_t i = 0; i < columns.size(); ++i)
        {
            const std::vector<int>& across = other.m_ColIndex[AsIndex(columns[i])];
            for (std::size_t j = 0; j < across.size(); ++j)
            {
                const std::size_t target = AsIndex(across[j]);
                if (!isHit[target])
                {
                    isHit[target] = true;
                    sums[target] = 0.0;
                    hits.push_back(across[j]);
                }
                sums[target] += m_Values[AsIndex(row)][i] * other.m_Values[AsIndex(columns[i])][j];
            }
        }
        std::sort(hits.begin(), hits.end());
        for (const int column : hits)
        {
            product.Append(row, column, sums[AsIndex(column)]);
            isHit[AsIndex(column)] = false;
        }
        hits.clear();
    }
    result = std::move(product);
    return true;
}

bool CSparseMatrix::Add(const CSparseMatrix& other, CSparseMatrix& result) const
{
    return Combine(other, 1.0, result);
}

bool CSparseMatrix::Subtract(const CSparseMatrix& other, CSparseMatrix& result) const
{
    return Combine(other, -1.0, result);
}

/// Places without an entry on either side would be 0, which is not stored.
bool CSparseMatrix::Combine(const CSparseMatrix& other, double fSign, CSparseMatrix& result) const
{
    if (m_nRows != other.m_nRows || m_nCols != other.m_nCols)
    {
        return false;
    }
    CSparseMatrix sum(m_nRows, m_nCols);
    for (int row = 0; row < m_nRows; ++row)
    {
        std::vector<int> columns = m_ColIndex[AsIndex(row)];
        const std::vector<int>& others = other.m_ColIndex[AsIndex(row)];
        columns.insert(columns.end(), others.begin(), others.end());
        std::sort(columns.begin(), columns.end());
        columns.erase(std::unique(columns.begin(), columns.end()), columns.end());
        for (const int column : columns)
        {
            double first = 0.0;
            double second = 0.0;
            GetValue(row, column, first);
            other.GetValue(row, column, second);
            const double value = first + fSign * second;
            if (!(std::abs(value) < m_fEpsilon))
            {
                sum.Append(row, column, value);
            }
        }
    }
    result = std::move(sum);
    return true;
}

bool CSparseMatrix::Dot(const CSparseMatrix& other, double& fValue) const
{
    if (m_nCols != 1 || other.m_nCols != 1 || m_nRows != other.m_nRows)
    {
        return false;
    }
    fValue = 0.0;
    for (int row = 0; row < m_nRows; ++row)
    {
        double first = 0.0;
        double second = 0.0;
        GetValue(row, 0, first);
        other.GetValue(row, 0, second);
        fValue += first * second;
    }
    return true;
}

void CSparseMatrix::Transpose(CSparseMatrix& result) const
{
    CSparseMatrix transposed(m_nCols, m_nRows);
    for (int row = 0; row < m_nRows; ++row)
    {
        const std::vector<int>& columns = m_ColIndex[AsIndex(row)];
        for (std::size_t i = 0; i < columns.size(); ++i)
        {
            transposed.Append(columns[i], row, m_Values[AsIndex(row)][i]);
        }
    }
    result = std::move(transposed);
}

void CSparseMatrix::Compress() const
{
    m_Compressed = {};
    for (std::size_t row = 0; row < m_ColIndex.size(); ++row)
    {
        m_Compressed.columns.insert(m_Compressed.columns.end(), m_ColIndex[row].begin(),
                                    m_ColIndex[row].end());
        m_Compressed.values.insert(m_Compressed.values.end(), m_Values[row].begin(), m_Values[row].end());
        m_Compressed.ends.push_back(m_Compressed.columns.size());
    }
    m_Compressed.isValid = true;
}

void CSparseMatrix::MultiplyVector2(const std::vector<double>& x, std::vector<double>& y, int n) const
{
    if (n != m_nCols)
    {
        DebugConsole() << "Error: CSparseMatrix::MultiplyVector2\n";
        return;
    }
    ASSERT(x.size() == AsIndex(m_nCols) + 1 && y.size() == AsIndex(m_nRows) + 1);
    if (!m_Compressed.isValid)
    {
        Compress();
    }
    const int* column = m_Compressed.columns.data();
    const double* value = m_Compressed.values.data();
    std::size_t entry = 0;
    for (std::size_t row = 0; row < m_Compressed.ends.size(); ++row)
    {
        double sum = 0.0;
        for (const std::size_t end = m_Compressed.ends[row]; entry < end; ++entry)
        {
            sum += value[entry] * x[AsIndex(column[entry]) + 1];
        }
        y[row + 1] = sum;
    }
}

bool CSparseMatrix::CheckSymmetric() const
{
    constexpr double kMostDifference = 1e-10;
    constexpr std::int64_t kShare = 1000;
    int count = 0;
    for (int row = 0; row < m_nRows; ++row)
    {
        const std::vector<int>& columns = m_ColIndex[AsIndex(row)];
        for (std::size_t i = 0; i < columns.size(); ++i)
        {
            double mirrored = 0.0;
            GetValue(columns[i], row, mirrored);
            if (!(std::abs(m_Values[AsIndex(row)][i] - mirrored) < kMostDifference))
            {
                ++count;
            }
        }
    }
    DebugConsole() << "\n# Not Symmetric Elements = " << count << '\n';
    return count <= std::int64_t{m_nRows} * m_nCols / kShare;
}

double CSparseMatrix::AverageValue() const
{
    double sum = 0.0;
    std::size_t count = 0;
    for (const std::vector<double>& row : m_Values)
    {
        for (const double value : row)
        {
            sum += value;
            ++count;
        }
    }
    const double average = count == 0 ? 0.0 : sum / static_cast<double>(count);
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "\n# Average Elements = %f\n", average);
    DebugConsole() << text.data();
    return average;
}

void CSparseMatrix::Print() const
{
    DebugConsole() << "\n Print Matrix\n";
    std::array<char, 400> text{};
    for (int row = 0; row < m_nRows; ++row)
    {
        for (int column = 0; column < m_nCols; ++column)
        {
            double value = 0.0;
            GetValue(row, column, value);
            std::snprintf(text.data(), text.size(), "%8.4f\t", value);
            DebugConsole() << text.data();
        }
        DebugConsole() << '\n';
    }
}
}

#pragma once
#include <cstddef>
#include <string>
#include <vector>

namespace tessarine
{
/// A matrix of doubles with freely chosen bounds of its indices, in one block, zero at first.
///
/// Fails   Bounds that hold nothing are an assertion; so is an index outside of them. Without the memory the
///         message box "allocation failure 1 in pgDmatrix()" and a Failure.
class pgDmatrix
{
public:
    /// Rows nrl to nrh, columns ncl to nch, the ends included.
    pgDmatrix(int nrl, int nrh, int ncl, int nch);

    double& operator()(int row, int column) { return m_Block[GetIndex(row, column)]; }
    double operator()(int row, int column) const { return m_Block[GetIndex(row, column)]; }

    int GetRowCount() const { return m_nLastRow - m_nFirstRow + 1; }
    int GetColumnCount() const { return m_nLastColumn - m_nFirstColumn + 1; }

    /// Writes "ROWS * COLUMNS", then a line for each row: its number and its values. Throws FileError.
    /// @param name in the form of the dataset names
    void Dump(const std::string& name = "C:\\11123.txt") const;

private:
    std::size_t GetIndex(int row, int column) const;

    int m_nFirstRow;
    int m_nLastRow;
    int m_nFirstColumn;
    int m_nLastColumn;
    std::vector<double> m_Block;
};
}

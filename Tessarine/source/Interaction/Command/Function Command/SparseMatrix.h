#pragma once
#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace tessarine
{
/// A matrix of doubles by lists of its entries, row by row in the order of insertion. Rows and columns count
/// from 0. A column stands in a row once.
///
/// Says    The message boxes "Error: Invalid Row Index" and "Error: Matrix Multiply Condition Not Favored".
/// Fails   A negative size, and a column outside of the matrix, are assertions. A file that does not hold what
///         it should is a Failure that names its line.
/// Cost    An entry is found in constant time. A product with a vector is that of compressed rows, which are
///         made behind each change.
class CSparseMatrix
{
public:
    CSparseMatrix() = default;
    CSparseMatrix(int nRows, int nCols) { SetSize(nRows, nCols); }
    CSparseMatrix(const CSparseMatrix&) = default;
    CSparseMatrix(CSparseMatrix&&) = default;
    CSparseMatrix& operator=(const CSparseMatrix&) = default;
    CSparseMatrix& operator=(CSparseMatrix&&) = default;
    virtual ~CSparseMatrix() = default;

    /// Without entries.
    void SetSize(int nRows, int nCols);
    void Clear();

    int GetRowCount() const { return m_nRows; }
    int GetColumnCount() const { return m_nCols; }
    /// Values of smaller magnitude count as zero in sums.
    double GetEpsilon() const { return m_fEpsilon; }
    bool IsValidRow(int nRow) const { return nRow >= 0 && nRow < m_nRows; }

    /// Column numbers and values of a row's entries, in the order of their insertion.
    const std::vector<int>& GetColumnsOf(int nRow) const;
    const std::vector<double>& GetValuesOf(int nRow) const;

    /// False for a row outside of the matrix.
    bool HasEntry(int nRow, int nCol) const;
    /// @return true where the entry is new; false where it was overwritten, and for an invalid row
    bool SetValue(int nRow, int nCol, double fValue);
    /// Adds to an entry, which is 0 where there is none, and creates it.
    ///
    /// Needs   A row of the matrix (asserted).
    void AddValue(int nRow, int nCol, double fValue);
    /// Divides every entry.
    void DivideBy(double fDivisor);
    /// 0 where there is no entry. @return true
    bool GetValue(int nRow, int nCol, double& fValue) const;
    /// @return whether there was one. Linear in the row.
    bool RemoveEntry(int nRow, int nCol);
    /// Whether any entry is exactly this.
    bool HasValue(double fValue) const;

    /// Entries stand where two entries met, also where their sum is 0; columns increase along the rows.
    ///
    /// @return false where the sizes do not fit
    bool Multiply(const CSparseMatrix& other, CSparseMatrix& result) const;
    bool Add(const CSparseMatrix& other, CSparseMatrix& result) const;
    bool Subtract(const CSparseMatrix& other, CSparseMatrix& result) const;
    /// The product of two columns. @return false for all else, or where their lengths differ
    bool Dot(const CSparseMatrix& other, double& fValue) const;
    void Transpose(CSparseMatrix& result) const;

    /// Writes the product into y. Both vectors are one-based: their first element counts for nothing.
    ///
    /// Needs   Vectors of one element more than columns and rows (asserted).
    /// Says    "Error: CSparseMatrix::MultiplyVector2", and leaves y, where n is not the number of columns.
    void MultiplyVector2(const std::vector<double>& x, std::vector<double>& y, int n) const;

    /// Says how many entries differ from their counterpart by 1e-10 or more.
    /// @return whether at most a thousandth of the places does
    bool CheckSymmetric() const;
    /// Says and gives the mean of the entries; 0 without entries.
    double AverageValue() const;
    /// All places, row by row.
    void Print() const;

    /// Through a file dialog. Numbers are written with six significant digits. Throws FileError.
    ///
    /// @return false when the user cancels
    bool SaveToFile() const;
    bool LoadFromFile();
    /// The same for a matrix of one column (asserted).
    bool SaveVector() const;
    bool LoadVector();

    /// Without a dialog.
    void WriteMatrix(const std::string& path) const;
    void ReadMatrix(const std::string& path);
    void WriteVector(const std::string& path) const;
    void ReadVector(const std::string& path);

private:
    /// All entries one behind the other.
    struct CompressedRows
    {
        std::vector<std::size_t> ends; ///< behind each row's last entry
        std::vector<int> columns;
        std::vector<double> values;
        bool isValid = false;
    };
    using ColumnPlaces = std::unordered_map<int, std::size_t>;

    std::size_t FindEntry(int nRow, int nCol) const;
    void Append(int nRow, int nCol, double fValue);
    void Compress() const;
    bool Combine(const CSparseMatrix& other, double fSign, CSparseMatrix& result) const;

    double m_fEpsilon = 1e-14;
    int m_nCols = 0;
    int m_nRows = 0;
    std::vector<std::vector<int>> m_ColIndex;
    std::vector<std::vector<double>> m_Values;
    std::unordered_map<int, ColumnPlaces> m_LongRows; ///< where the columns of a long row stand
    mutable CompressedRows m_Compressed;
};
}

#include "Assert.h"
#include "Failure.h"
#include "File.h"
#include "IODatasetText.h"
#include "Platform.h"
#include "SparseMatrix.h"
#include <array>
#include <charconv>

// The files of sparse matrices and vectors, and their dialogs.

namespace tessarine
{
namespace
{
constexpr char kMatrixFilter[] = "Matrix File (*.mtx)|*.mtx||";
constexpr char kVectorFilter[] = "Vector File (*.vec)|*.vec||";
constexpr char kMatrixExtension[] = ".mtx";
constexpr char kVectorExtension[] = ".vec";

/// As a stream writes it by default.
void AppendNumber(std::string& text, double value)
{
    constexpr int kDigits = 6;
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::general, kDigits);
    text.append(digits.data(), end.ptr);
}

void WriteWhole(const std::string& path, const std::string& text)
{
    ReplacingFile file(path);
    file.Write(text);
    file.Commit();
}

/// A number of things that the rest of the file has to hold, a byte each at least.
int ReadCount(IODatasetText& text, const char* meaning)
{
    const int count = text.ReadDecimal(meaning);
    if (count < 0 || static_cast<std::size_t>(count) > text.GetSize())
    {
        text.Refuse(std::string(meaning) + " is " + std::to_string(count) +
                    "; it must be 0 at least, and no more than the file's " + std::to_string(text.GetSize()) +
                    " bytes");
    }
    return count;
}

void ReadEntry(IODatasetText& text, CSparseMatrix& matrix, int row)
{
    const int column = text.ReadDecimal("an entry's column");
    const std::string place = "row " + std::to_string(row) + ", column " + std::to_string(column);
    if (column < 0 || column >= matrix.GetColumnCount())
    {
        text.Refuse("an entry stands in " + place + ", and the matrix has " +
                    std::to_string(matrix.GetColumnCount()) + " columns, counted from 0");
    }
    if (matrix.HasEntry(row, column))
    {
        text.Refuse("a second entry stands in " + place + " (both count from 0)");
    }
    matrix.SetValue(row, column, text.ReadDouble("an entry's value"));
}
}

bool CSparseMatrix::SaveToFile() const
{
    const auto path = GetPlatform().AskSaveFile({kMatrixFilter, kMatrixExtension, "Store Matrix File"});
    if (path)
    {
        WriteMatrix(path->string());
    }
    return path.has_value();
}

bool CSparseMatrix::LoadFromFile()
{
    const auto path = GetPlatform().AskOpenFile({kMatrixFilter, kMatrixExtension, "Open Matrix File"});
    if (path)
    {
        ReadMatrix(path->string());
    }
    return path.has_value();
}

bool CSparseMatrix::SaveVector() const
{
    const auto path = GetPlatform().AskSaveFile({kVectorFilter, kVectorExtension, "Store Vector File"});
    if (path)
    {
        WriteVector(path->string());
    }
    return path.has_value();
}

bool CSparseMatrix::LoadVector()
{
    const auto path = GetPlatform().AskOpenFile({kVectorFilter, kVectorExtension, "Open Vector File"});
    if (path)
    {
        ReadVector(path->string());
    }
    return path.has_value();
}

void CSparseMatrix::WriteMatrix(const std::string& path) const
{
    std::string text = std::to_string(m_nRows) + '\t' + std::to_string(m_nCols) + '\n';
    for (int row = 0; row < m_nRows; ++row)
    {
        const std::vector<int>& columns = GetColumnsOf(row);
        text += std::to_string(columns.size()) + '\n';
        for (std::size_t i = 0; i < columns.size(); ++i)
        {
            text += std::to_string(columns[i]) + '\t';
            AppendNumber(text, GetValuesOf(row)[i]);
            text += '\n';
        }
    }
    WriteWhole(path, text);
}

void CSparseMatrix::ReadMatrix(const std::string& path)
{
    IODatasetText text(path, ReadFile(path));
    const int rows = ReadCount(text, "the number of rows");
    const int columns = text.ReadDecimal("the number of columns");
    if (columns < 0)
    {
        text.Refuse("the number of columns is " + std::to_string(columns) + "; it must be 0 at least");
    }
    CSparseMatrix matrix(rows, columns);
    for (int row = 0; row < rows; ++row)
    {
        const int entries = ReadCount(text, "the number of entries");
        for (int i = 0; i < entries; ++i)
        {
            ReadEntry(text, matrix, row);
        }
    }
    *this = std::move(matrix);
}

void CSparseMatrix::WriteVector(const std::string& path) const
{
    ASSERT(m_nCols == 1);
    std::string text = std::to_string(m_nRows) + '\n';
    for (int row = 0; row < m_nRows; ++row)
    {
        double value = 0.0;
        GetValue(row, 0, value);
        AppendNumber(text, value);
        text += '\n';
    }
    WriteWhole(path, text);
}

void CSparseMatrix::ReadVector(const std::string& path)
{
    IODatasetText text(path, ReadFile(path));
    const int length = ReadCount(text, "the length of the vector");
    CSparseMatrix vector(length, 1);
    for (int row = 0; row < length; ++row)
    {
        vector.SetValue(row, 0, text.ReadDouble("a value"));
    }
    *this = std::move(vector);
}
}

#include "pgDmatrix.h"
#include "Assert.h"
#include "Failure.h"
#include "File.h"
#include "Path.h"
#include "Platform.h"
#include <array>
#include <charconv>
#include <new>

namespace tessarine
{
namespace
{
void AppendFixed(std::string& text, double value)
{
    constexpr int kDecimals = 6;
    std::array<char, 330> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed, kDecimals);
    text.append(digits.data(), end.ptr);
}
}

pgDmatrix::pgDmatrix(int nrl, int nrh, int ncl, int nch)
    : m_nFirstRow(nrl), m_nLastRow(nrh), m_nFirstColumn(ncl), m_nLastColumn(nch)
{
    ASSERT(nrl <= nrh && ncl <= nch);
    try
    {
        m_Block.resize(static_cast<std::size_t>(GetRowCount()) * static_cast<std::size_t>(GetColumnCount()));
    }
    catch (const std::exception&) // too large for the memory, or for any
    {
        GetPlatform().ShowMessage("error", "allocation failure 1 in pgDmatrix()");
        throw Failure::AfterMessageBox("there is not enough memory for a matrix of " +
                                       std::to_string(GetRowCount()) + " x " +
                                       std::to_string(GetColumnCount()));
    }
}

void pgDmatrix::Dump(const std::string& name) const
{
    std::string text = std::to_string(GetRowCount()) + " * " + std::to_string(GetColumnCount()) + "\n";
    for (int row = m_nFirstRow; row <= m_nLastRow; ++row)
    {
        text += std::to_string(row) + ":\t";
        for (int column = m_nFirstColumn; column <= m_nLastColumn; ++column)
        {
            AppendFixed(text, (*this)(row, column));
            text += '\t';
        }
        text += '\n';
    }
    ReplacingFile file(ResolveForWriting(name));
    file.Write(text);
    file.Commit();
}

std::size_t pgDmatrix::GetIndex(int row, int column) const
{
    ASSERT(row >= m_nFirstRow && row <= m_nLastRow && column >= m_nFirstColumn && column <= m_nLastColumn);
    return static_cast<std::size_t>(row - m_nFirstRow) * static_cast<std::size_t>(GetColumnCount()) +
           static_cast<std::size_t>(column - m_nFirstColumn);
}
}

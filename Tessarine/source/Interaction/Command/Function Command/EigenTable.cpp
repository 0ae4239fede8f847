#include "EigenTable.h"
#include "Assert.h"
#include "Console.h"
#include "Failure.h"
#include "File.h"
#include "LoopEigenAnalysis.h"
#include "Path.h"
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <utility>

namespace tessarine
{
namespace
{
constexpr int kMostValence = 1000; ///< of a table that is made
constexpr std::size_t kCountBytes = sizeof(std::int32_t);

/// Numbers in the entry of a valence.
std::uintmax_t CountNumbers(int nValence)
{
    constexpr std::uintmax_t kCoefficients = std::uintmax_t{EigenData::kSubTriangles} * EigenData::kBasisSize;
    const auto order = static_cast<std::uintmax_t>(nValence) + 6;
    return order * (1 + order + kCoefficients);
}

/// Whether a file of that size is a table up to that valence.
bool FitsValences(std::uintmax_t fileSize, std::int32_t nMostValence)
{
    std::uintmax_t size = kCountBytes;
    for (std::int32_t n = EigenTable::kLeastValence; n <= nMostValence && size <= fileSize; ++n)
    {
        size += sizeof(double) * CountNumbers(n);
    }
    return nMostValence >= EigenTable::kLeastValence && size == fileSize;
}

/// Little-endian.
template <class TWord>
TWord ReadWord(std::string_view bytes)
{
    TWord word = 0;
    for (std::size_t i = 0; i < sizeof(TWord); ++i)
    {
        word |= static_cast<TWord>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    }
    return word;
}

template <class TWord>
void AppendWord(std::string& bytes, TWord word)
{
    for (std::size_t i = 0; i < sizeof(TWord); ++i)
    {
        bytes += static_cast<char>(word >> (8 * i) & 0xFFU);
    }
}

std::vector<double> ReadNumbers(std::string_view& bytes, std::size_t count)
{
    std::vector<double> numbers(count);
    for (double& number : numbers)
    {
        number = std::bit_cast<double>(ReadWord<std::uint64_t>(bytes));
        if (!std::isfinite(number))
        {
            throw Failure("it holds what is no number");
        }
        bytes.remove_prefix(sizeof(double));
    }
    return numbers;
}

void AppendNumbers(std::string& bytes, const std::vector<double>& numbers)
{
    for (const double number : numbers)
    {
        AppendWord(bytes, std::bit_cast<std::uint64_t>(number));
    }
}

EigenData ReadEntry(std::string_view& bytes, int nValence)
{
    const auto order = static_cast<std::size_t>(nValence) + 6;
    EigenData data;
    data.m_Eigenvalues = ReadNumbers(bytes, order);
    data.m_InvEigenvectors = ReadNumbers(bytes, order * order);
    for (std::vector<double>& coefficients : data.m_Coefficients)
    {
        coefficients = ReadNumbers(bytes, order * EigenData::kBasisSize);
    }
    return data;
}

std::int32_t ReadMostValence(std::string_view bytes)
{
    return bytes.size() < kCountBytes ? 0 : static_cast<std::int32_t>(ReadWord<std::uint32_t>(bytes));
}

void DemandFit(std::uintmax_t fileSize, std::int32_t nMostValence)
{
    if (!FitsValences(fileSize, nMostValence))
    {
        throw Failure("its length is not that of a table up to the valence that it names");
    }
}

/// @param numbers by column
void PrintLines(const std::vector<double>& numbers, std::size_t rows, std::size_t columns)
{
    std::array<char, 400> text{}; // the longest double has 314 characters
    for (std::size_t i = 0; i < rows; ++i)
    {
        for (std::size_t j = 0; j < columns; ++j)
        {
            std::snprintf(text.data(), text.size(), "%6.3f ", numbers[i + rows * j]);
            DebugConsole() << text.data();
        }
        DebugConsole() << '\n';
    }
}

void PrintEntry(const EigenData& data)
{
    const auto order = static_cast<std::size_t>(data.GetOrder());
    DebugConsole() << "N=" << data.GetValence() << "\n\nEigenvalues:\n\n";
    PrintLines(data.m_Eigenvalues, 1, order);
    DebugConsole() << "\nInverse of Eigenvectors:\n\n";
    PrintLines(data.m_InvEigenvectors, order, order);
    DebugConsole() << "\nCoefficients of the Eigenbasis functions\n\n";
    for (std::size_t k = 0; k < data.m_Coefficients.size(); ++k)
    {
        DebugConsole() << "k=" << k << " :\n\n";
        PrintLines(data.m_Coefficients[k], order, EigenData::kBasisSize);
    }
}
}

EigenTable EigenTable::Missing(std::string reason)
{
    EigenTable table;
    table.m_strReason = std::move(reason);
    return table;
}

const EigenData& EigenTable::Get(int nValence) const
{
    ASSERT(nValence >= kLeastValence);
    if (IsMissing())
    {
        throw Failure(m_strReason.empty() ? "there is no table for the limit surface: none was read"
                                          : m_strReason);
    }
    if (nValence > GetMostValence())
    {
        throw Failure("the table for the limit surface ends at the valence " +
                      std::to_string(GetMostValence()) + ", and " + std::to_string(nValence) +
                      " is needed: make a longer one (tessarine-batch make-eigen-table FILE NMAX)");
    }
    return m_Entries[static_cast<std::size_t>(nValence - kLeastValence)];
}

EigenTable ParseEigenTable(std::string_view bytes)
{
    const std::int32_t nMostValence = ReadMostValence(bytes);
    DemandFit(bytes.size(), nMostValence);
    bytes.remove_prefix(kCountBytes);
    std::vector<EigenData> entries;
    for (int n = EigenTable::kLeastValence; n <= nMostValence; ++n)
    {
        entries.push_back(ReadEntry(bytes, n));
    }
    return EigenTable(std::move(entries));
}

EigenTable ReadEigenTable(const std::string& name)
{
    constexpr char kRemedy[] = "; make a new one (tessarine-batch make-eigen-table FILE)";
    try
    {
        const std::filesystem::path path = ResolveForReading(name);
        const FileHead head = ReadFileHead(path, kCountBytes);
        DemandFit(head.size, ReadMostValence(head.bytes)); // before as much is allocated
        return ParseEigenTable(ReadFile(path));
    }
    catch (const FileError& error)
    {
        return EigenTable::Missing(error.what() + std::string(kRemedy));
    }
    catch (const Failure& failure)
    {
        return EigenTable::Missing(name + " is no table for the limit surface: " + failure.GetMessage() +
                                   kRemedy);
    }
}

void FreeEigenTable(EigenTable& table)
{
    table = EigenTable();
}

void PrintEigenTable(const EigenTable& table)
{
    DebugConsole() << "Nmax = " << table.GetMostValence() << "\n\n";
    for (int n = EigenTable::kLeastValence; n <= table.GetMostValence(); ++n)
    {
        PrintEntry(table.Get(n));
    }
}

void WriteEigenTable(const std::filesystem::path& path, int nMostValence)
{
    if (nMostValence < EigenTable::kLeastValence || nMostValence > kMostValence)
    {
        throw Failure("a table for the limit surface goes up to a valence from " +
                      std::to_string(EigenTable::kLeastValence) + " to " + std::to_string(kMostValence) +
                      ", not " + std::to_string(nMostValence));
    }
    ReplacingFile file(path);
    std::string bytes;
    AppendWord(bytes, static_cast<std::uint32_t>(nMostValence));
    for (int n = EigenTable::kLeastValence; n <= nMostValence; ++n)
    {
        const EigenData data = AnalyseLoopStep(n);
        AppendNumbers(bytes, data.m_Eigenvalues);
        AppendNumbers(bytes, data.m_InvEigenvectors);
        for (const std::vector<double>& coefficients : data.m_Coefficients)
        {
            AppendNumbers(bytes, coefficients);
        }
        file.Write(bytes);
        bytes.clear();
    }
    file.Commit();
}
}

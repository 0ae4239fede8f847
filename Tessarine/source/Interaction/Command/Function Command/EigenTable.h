#pragma once
#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessarine
{
/// The eigen-analysis of Loop subdivision around a vertex of valence N, in a patch of K = N + 6 control vertices.
struct EigenData
{
    static constexpr int kSubTriangles = 3;
    static constexpr int kBasisSize = 12; ///< of a patch without an irregular vertex

    int GetValence() const { return static_cast<int>(m_Eigenvalues.size()) - 6; }
    int GetOrder() const { return static_cast<int>(m_Eigenvalues.size()); }

    std::vector<double> m_Eigenvalues;     ///< K
    std::vector<double> m_InvEigenvectors; ///< K x K: row i, column j at i + K * j
    /// Of the eigenbasis functions on each sub-triangle, K x 12: row i, column j at i + K * j.
    std::array<std::vector<double>, kSubTriangles> m_Coefficients;
};

/// The eigen data of all valences from 3 on.
class EigenTable
{
public:
    static constexpr int kLeastValence = 3;

    EigenTable() = default;
    explicit EigenTable(std::vector<EigenData> entries) : m_Entries(std::move(entries)) {}

    /// One without entries, which says why to whoever asks for one.
    static EigenTable Missing(std::string reason);

    bool IsMissing() const { return m_Entries.empty(); }
    /// The highest valence; 2 where there is none.
    int GetMostValence() const { return static_cast<int>(m_Entries.size()) + kLeastValence - 1; }

    /// Needs   A valence of 3 or more (asserted).
    /// Fails   Failure where the table is missing, which tells why, and for a valence that it does not reach.
    const EigenData& Get(int nValence) const;

private:
    std::vector<EigenData> m_Entries;
    std::string m_strReason;
};

/// The name of the table that the fits read.
inline constexpr char kEigenTableFile[] = "data\\lpdata50NT.dat";

/// A table from the bytes of its file: the highest valence as an int32, then for each valence its arrays in the order of
/// EigenData, little-endian.
///
/// Fails   Failure with a half sentence about the file, where its length is not that of its valences, or it holds what
///         is no number.
EigenTable ParseEigenTable(std::string_view bytes);

/// Reads a table. One that is not there, or whose length is not that of its valences, or that holds what is no number,
/// is missing, and nothing of it is kept.
///
/// @param name in the form of the dataset names
EigenTable ReadEigenTable(const std::string& name = kEigenTableFile);

/// Gives the memory of a table back; one that is missing has none.
void FreeEigenTable(EigenTable& table);

/// Says the whole table, for whoever looks for a fault in it.
void PrintEigenTable(const EigenTable& table);

/// Makes the table for all valences up to a highest one, and writes it entry by entry.
///
/// Fails   Failure for a valence below 3 or above 1000 (a file of 2.9 GB). FileError.
/// Cost    What it writes.
void WriteEigenTable(const std::filesystem::path& path, int nMostValence);
}

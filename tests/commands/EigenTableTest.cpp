#include "EigenTable.h"
#include "Capture.h"
#include "LoopEigenAnalysis.h"
#include "Refusal.h"
#include "TemporaryFolder.h"
#include <cmath>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace tessarine
{
namespace
{
using testing::AllOf;
using testing::HasSubstr;

/// Names the reason why a table gives nothing.
std::string GetReason(const EigenTable& table)
{
    return GetRefusal([&table] { static_cast<void>(table.Get(6)); });
}

class EigenTableTest : public testing::Test
{
protected:
    std::string WriteAndRead(int nMostValence)
    {
        WriteEigenTable(m_Folder.GetPath() / "table.dat", nMostValence);
        return ReadFile(m_Folder.GetPath() / "table.dat");
    }

    EigenTable ReadBytes(const std::string& bytes)
    {
        m_Folder.Write("hostile.dat", bytes);
        return ReadEigenTable("hostile.dat");
    }

    TemporaryCurrentFolder m_Folder;
};

TEST_F(EigenTableTest, ReadsWhatWasWritten)
{
    WriteAndRead(9);
    const EigenTable table = ReadEigenTable("Table.DAT"); // as dataset names are
    ASSERT_FALSE(table.IsMissing());
    EXPECT_EQ(table.GetMostValence(), 9);
    for (int n = 3; n <= 9; ++n)
    {
        const EigenData made = AnalyseLoopStep(n);
        EXPECT_EQ(table.Get(n).GetValence(), n);
        EXPECT_EQ(table.Get(n).GetOrder(), n + 6);
        EXPECT_EQ(table.Get(n).m_Eigenvalues, made.m_Eigenvalues);
        EXPECT_EQ(table.Get(n).m_InvEigenvectors, made.m_InvEigenvectors);
        EXPECT_EQ(table.Get(n).m_Coefficients, made.m_Coefficients);
    }
}

TEST_F(EigenTableTest, HasACountAndThenTheValencesByColumn)
{
    const std::string bytes = WriteAndRead(4);
    // K + K K + 36 K numbers for K = 9 and 10, behind the count.
    ASSERT_EQ(bytes.size(), 4 + 8 * (9 + 81 + 324 + 10 + 100 + 360));
    EXPECT_EQ(bytes.substr(0, 4), std::string("\4\0\0\0", 4));
    const auto numberAt = [&bytes](std::size_t place)
    {
        double number = 0.0;
        std::memcpy(&number, bytes.data() + 4 + 8 * place, sizeof number);
        return number;
    };
    const EigenData data = AnalyseLoopStep(3);
    EXPECT_EQ(numberAt(0), data.m_Eigenvalues[0]);
    EXPECT_EQ(numberAt(9 + 2 + 9 * 5), data.m_InvEigenvectors[2 + 9 * 5]);
    EXPECT_EQ(numberAt(90 + 7), data.m_Coefficients[0][7]);
    EXPECT_EQ(numberAt(90 + 108 + 7), data.m_Coefficients[1][7]);
    EXPECT_EQ(numberAt(90 + 216 + 7), data.m_Coefficients[2][7]);
}

TEST_F(EigenTableTest, FallsFromOneToASixteenth)
{
    for (const int n : {3, 4, 5, 6, 12, 49, 50})
    {
        const std::vector<double> values = AnalyseLoopStep(n).m_Eigenvalues;
        EXPECT_EQ(values.front(), 1.0);
        EXPECT_EQ(values.back(), 1.0 / 16.0);
        EXPECT_TRUE(std::is_sorted(values.rbegin(), values.rend()));
    }
}

TEST_F(EigenTableTest, OfRegularVerticesHalvesAndQuartersExactly)
{
    // The quartic polynomials: constant, linear, quadratic, and so on.
    EXPECT_THAT(AnalyseLoopStep(6).m_Eigenvalues,
                testing::Pointwise(testing::DoubleNear(1e-15), {1.0, 0.5, 0.5, 0.25, 0.25, 0.25, 0.125, 0.125,
                                                                0.125, 0.125, 0.0625, 0.0625}));
}

TEST_F(EigenTableTest, IsMissingWithoutAFileAndTellsWhich)
{
    const EigenTable table = ReadEigenTable();
    EXPECT_TRUE(table.IsMissing());
    EXPECT_THAT(GetReason(table),
                AllOf(HasSubstr("data/lpdata50NT.dat: no such file"), HasSubstr("make-eigen-table")));
}

TEST_F(EigenTableTest, OfAnotherLengthIsRefused)
{
    const std::string whole = WriteAndRead(5);
    for (const std::string& bytes : {std::string(), whole.substr(0, 3), whole.substr(0, 4),
                                     whole.substr(0, whole.size() - 1), whole + 'x'})
    {
        const EigenTable table = ReadBytes(bytes);
        EXPECT_TRUE(table.IsMissing()) << bytes.size();
        EXPECT_THAT(GetReason(table), HasSubstr("its length is not that of a table"));
    }
}

TEST_F(EigenTableTest, OfASillyValenceIsRefusedWithoutAnAllocation)
{
    const std::string numbers(8 * 500, '\0');
    for (const char* const count :
         {"\2\0\0\0", "\0\0\0\0", "\xFF\xFF\xFF\xFF", "\xFF\xFF\xFF\x7F", "\0\0\0\x80"})
    {
        EXPECT_TRUE(ReadBytes(std::string(count, 4) + numbers).IsMissing());
    }
}

TEST_F(EigenTableTest, WithWhatIsNoNumberIsRefused)
{
    std::string bytes = WriteAndRead(3);
    const double infinity = std::numeric_limits<double>::infinity();
    std::memcpy(bytes.data() + bytes.size() - 8, &infinity, sizeof infinity);
    EXPECT_THAT(GetReason(ReadBytes(bytes)),
                HasSubstr("hostile.dat is no table for the limit surface: it holds"));
}

TEST_F(EigenTableTest, InPlaceOfAFolderIsRefused)
{
    std::filesystem::create_directory("hostile.dat");
    EXPECT_THAT(GetReason(ReadEigenTable("hostile.dat")), HasSubstr("it is a folder"));
}

TEST_F(EigenTableTest, RefusesValencesThatItDoesNotReach)
{
    WriteAndRead(5);
    const EigenTable table = ReadEigenTable("table.dat");
    EXPECT_EQ(GetRefusal([&table] { static_cast<void>(table.Get(5)); }), "");
    EXPECT_THAT(GetReason(table),
                AllOf(HasSubstr("ends at the valence 5, and 6 is needed"), HasSubstr("NMAX")));
    const AssertionCapture capture;
    EXPECT_THROW(static_cast<void>(table.Get(2)), AssertionFailure);
}

TEST_F(EigenTableTest, IsMadeForValencesWithinReasonOnly)
{
    for (const int n : {-1, 2, 1001, std::numeric_limits<int>::max()})
    {
        EXPECT_THAT(GetRefusal([n] { WriteEigenTable("none.dat", n); }), HasSubstr("from 3 to 1000"));
    }
    EXPECT_FALSE(std::filesystem::exists("none.dat"));
}

TEST_F(EigenTableTest, GivesItsMemoryBack)
{
    WriteAndRead(3);
    EigenTable table = ReadEigenTable("table.dat");
    FreeEigenTable(table);
    EXPECT_TRUE(table.IsMissing());
    FreeEigenTable(table); // one that is missing
    EXPECT_THAT(GetReason(table), HasSubstr("none was read"));
}

TEST_F(EigenTableTest, IsPrintedWhole)
{
    EigenData data;
    data.m_Eigenvalues.assign(9, 0.5);
    data.m_InvEigenvectors.assign(81, 0.0);
    data.m_InvEigenvectors[2 + 9 * 1] = -1.25; // row 2, column 1
    for (std::size_t k = 0; k < 3; ++k)
    {
        data.m_Coefficients[k].assign(108, static_cast<double>(k));
    }
    ConsoleCapture console;
    PrintEigenTable(EigenTable({data}));
    const std::vector<std::string> lines = console.GetLines();
    const auto repeat = [](const std::string& text, int times)
    {
        std::string all;
        for (int i = 0; i < times; ++i)
        {
            all += text;
        }
        return all;
    };
    ASSERT_EQ(lines.size(), 6U + 2 + 2 + 9 + 1 + 2 + 3 * 11);
    EXPECT_EQ(lines[0], "Nmax = 3");
    EXPECT_EQ(lines[2], "N=3");
    EXPECT_EQ(lines[4], "Eigenvalues:");
    EXPECT_EQ(lines[6], repeat(" 0.500 ", 9));
    EXPECT_EQ(lines[7], "");
    EXPECT_EQ(lines[8], "Inverse of Eigenvectors:");
    EXPECT_EQ(lines[10], repeat(" 0.000 ", 9));
    EXPECT_EQ(lines[12], " 0.000 -1.250 " + repeat(" 0.000 ", 7));
    EXPECT_EQ(lines[19], "");
    EXPECT_EQ(lines[20], "Coefficients of the Eigenbasis functions");
    EXPECT_EQ(lines[22], "k=0 :");
    EXPECT_EQ(lines[24], repeat(" 0.000 ", 12));
    EXPECT_EQ(lines[33], "k=1 :");
    EXPECT_EQ(lines[46], repeat(" 2.000 ", 12));
}
}
}

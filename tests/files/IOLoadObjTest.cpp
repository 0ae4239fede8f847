#include "IOLoadObj.h"
#include "Capture.h"
#include "Failure.h"
#include "LiteralObjReader.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>

/// The parsing of OBJ texts into arrays. The import as a whole is tested in ImportTest.
namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

/// A text read into the arrays. Numbers that the text does not have are no matter here.
struct Parsed
{
    explicit Parsed(const std::string& text)
    {
        ConsoleCapture console;
        try
        {
            reader.ParseText("model.obj", text);
        }
        catch (const Failure& failure)
        {
            failureText = failure.GetMessage();
        }
        lines = console.GetLines();
    }

    MANBrepElementManager manager;
    IOLoadObj reader{nullptr, &manager};
    std::string failureText;
    std::vector<std::string> lines;
};

std::string Unknown(int line)
{
    return "Unknow token! Line: " + std::to_string(line) + ",Index: 0";
}

std::vector<double> NumbersOf(const PositionList& list)
{
    std::vector<double> numbers;
    for (const smVec3d& vector : list)
    {
        numbers.insert(numbers.end(), {vector.x, vector.y, vector.z});
    }
    return numbers;
}

std::vector<float> NumbersOf(const TexCoordList& list)
{
    std::vector<float> numbers;
    for (const smVec2f& vector : list)
    {
        numbers.insert(numbers.end(), {vector.x, vector.y});
    }
    return numbers;
}

TEST(IOLoadObj, ReadsPositionsWithFractionsAndExponents)
{
    const Parsed parsed("v 1.5e2 -2 .5");
    EXPECT_THAT(NumbersOf(parsed.reader.GetPositions()), ElementsAre(150.0, -2.0, 0.5));
}

TEST(IOLoadObj, WidensSinglePrecisionToDoubles)
{
    const Parsed parsed("v 0.1 0 0");
    EXPECT_EQ(parsed.reader.GetPositions()[0].x, static_cast<double>(1.0F / 10.0F));
}

TEST(IOLoadObj, IgnoresAFourthNumberOfAPosition)
{
    const Parsed parsed("v 1 2 3 4\nv 5 6 7");
    EXPECT_THAT(NumbersOf(parsed.reader.GetPositions()), ElementsAre(1.0, 2.0, 3.0, 5.0, 6.0, 7.0));
}

TEST(IOLoadObj, FillsMissingNumbersOfAPositionWithZeros)
{
    const Parsed parsed("v 1\nv ");
    EXPECT_THAT(NumbersOf(parsed.reader.GetPositions()), ElementsAre(1.0, 0.0, 0.0, 0.0, 0.0, 0.0));
}

TEST(IOLoadObj, ReadsNormalsAndTwoNumbersOfATextureCoordinate)
{
    const Parsed parsed("vn 0 0 1\nVN 1 0 0\nvt 0.5 0.5 0\nVT 0.25 0.75");
    EXPECT_THAT(NumbersOf(parsed.reader.GetNormals()), ElementsAre(0.0, 0.0, 1.0, 1.0, 0.0, 0.0));
    EXPECT_THAT(NumbersOf(parsed.reader.GetTexCoords()), ElementsAre(0.5F, 0.5F, 0.25F, 0.75F));
    EXPECT_THAT(parsed.lines, IsEmpty());
}

TEST(IOLoadObj, TakesNoTabBehindTheLetterOfAPosition)
{
    const Parsed parsed("v\t1 2 3\nV 1 2 3");
    EXPECT_THAT(NumbersOf(parsed.reader.GetPositions()), ElementsAre(1.0, 2.0, 3.0));
    EXPECT_THAT(parsed.lines, ElementsAre(Unknown(1)));
}

TEST(IOLoadObj, ReportsAnUnknownSecondLetterOfAVertexLine)
{
    EXPECT_THAT(Parsed("vp 1 2\nv\nvx").lines, ElementsAre(Unknown(1), Unknown(2), Unknown(3)));
}

TEST(IOLoadObj, ReadsEveryFormOfACorner)
{
    const Parsed parsed("f 1 2 3\nf 1/2 3/4 5/6\nF 1//2 3//4 5//6\nf 1/2/3 4/5/6 7/8/9");
    EXPECT_THAT(parsed.reader.GetFaceSizes(), ElementsAre(3, 3, 3, 3));
    EXPECT_THAT(parsed.reader.GetVertexIndices(), ElementsAre(1, 2, 3, 1, 3, 5, 1, 3, 5, 1, 4, 7));
    EXPECT_THAT(parsed.reader.GetTexIndices(), ElementsAre(2, 4, 6, 2, 5, 8));
    EXPECT_THAT(parsed.reader.GetNormalIndices(), ElementsAre(2, 4, 6, 3, 6, 9));
    EXPECT_THAT(parsed.reader.GetFaceGroups(), ElementsAre(0, 0, 0, 0));
}

TEST(IOLoadObj, KeepsPolygonsOfAnyNumberOfCorners)
{
    const Parsed parsed("f 1 2 3 4\nf 1 2 3 4 5 6 7\nf 1 2\nf 1");
    EXPECT_THAT(parsed.reader.GetFaceSizes(), ElementsAre(4, 7, 2, 1));
}

TEST(IOLoadObj, SeparatesCornersByTabsAndByAnyOneCharacter)
{
    const Parsed parsed("f\t1\t2  3,4");
    EXPECT_THAT(parsed.reader.GetVertexIndices(), ElementsAre(1, 2, 3, 4));
}

TEST(IOLoadObj, RepeatsTheNormalNumberForLaterCornersWithoutOne)
{
    const Parsed parsed("f 1//7 2 3\nf 1 2//8 3");
    EXPECT_THAT(parsed.reader.GetNormalIndices(), ElementsAre(7, 7, 7, 8, 8));
}

TEST(IOLoadObj, ContinuesAFaceBehindABackslashOnTheNextLine)
{
    const Parsed parsed("f \\\n1 2 3\no\n");
    EXPECT_THAT(parsed.reader.GetVertexIndices(), ElementsAre(1, 2, 3));
    EXPECT_THAT(parsed.reader.GetFaceSizes(), ElementsAre(3));
    EXPECT_THAT(parsed.lines, ElementsAre(Unknown(2), Unknown(3))); // the two lines of the face count as one
}

TEST(IOLoadObj, DoesNotContinueAFaceBehindItsNumbers)
{
    const Parsed parsed("f 1 2 \\\n3 4");
    EXPECT_THAT(parsed.reader.GetVertexIndices(), ElementsAre(1, 2, 0)); // the backslash is a zero number
    EXPECT_THAT(parsed.lines, ElementsAre(Unknown(2)));
}

TEST(IOLoadObj, OpensAGroupForEveryMaterialLine)
{
    const Parsed parsed("f 1 2 3\nusemtl a\nf 1 2 3\nf 1 2 3\nusemtl a\nf 1 2 3\nU.....b\nf 1 2 3");
    EXPECT_THAT(parsed.reader.GetFaceGroups(), ElementsAre(0, 1, 1, 2, 3));
    EXPECT_THAT(parsed.reader.GetGroupNames(), ElementsAre(Pair(1, "a"), Pair(2, "a"), Pair(3, "b")));
    EXPECT_TRUE(parsed.reader.UsesMaterial());
}

TEST(IOLoadObj, EndsANameAtTheFirstBlank)
{
    EXPECT_THAT(Parsed("usemtl my mat").reader.GetGroupNames(), ElementsAre(Pair(1, "my")));
}

TEST(IOLoadObj, TakesAMaterialLineWithoutNameForTheEmptyName)
{
    EXPECT_THAT(Parsed("u\nusemtl\nusemtl  ").reader.GetGroupNames(),
                ElementsAre(Pair(1, ""), Pair(2, ""), Pair(3, "")));
}

TEST(IOLoadObj, UsesNoMaterialWithoutAMaterialLine)
{
    EXPECT_FALSE(Parsed("v 0 0 0\nf 1 1 1").reader.UsesMaterial());
}

TEST(IOLoadObj, DecidesByTheFirstCharacterAlone)
{
    const Parsed parsed("frog 1 2\ngrape\n#\n\xFFxyz\nmountain top\nuncle.tom cat");
    EXPECT_THAT(parsed.reader.GetFaceSizes(), ElementsAre(5)); // each letter is a corner without a number
    EXPECT_THAT(parsed.reader.GetVertexIndices(), ElementsAre(0, 0, 0, 1, 2));
    EXPECT_THAT(parsed.reader.GetGroupNames(), ElementsAre(Pair(1, "tom")));
    EXPECT_THAT(parsed.lines, ElementsAre("Cannot open file!!")); // the library "in"
}

TEST(IOLoadObj, ReportsLinesOfOtherKindsAndGoesOn)
{
    const Parsed parsed("o a\ns 1\np 1\nl 1 2\nG\nM\nv 0 0 0");
    EXPECT_THAT(parsed.lines,
                ElementsAre(Unknown(1), Unknown(2), Unknown(3), Unknown(4), Unknown(5), Unknown(6)));
    EXPECT_EQ(parsed.reader.GetPositions().size(), 1U);
}

TEST(IOLoadObj, ReportsOneMoreLineWhenTheTextEndsInANewline)
{
    EXPECT_THAT(Parsed("v 0 0 0\n\n# two\n").lines, ElementsAre(Unknown(3))); // blank lines do not count
    EXPECT_THAT(Parsed("v 0 0 0\n# two").lines, IsEmpty());
}

TEST(IOLoadObj, ReportsOneMoreLineWhenOnlyBlanksFollowTheLastNewline)
{
    EXPECT_THAT(Parsed("v 0 0 0\n ").lines, ElementsAre(Unknown(2)));
    EXPECT_THAT(Parsed("v 0 0 0\n \t \r").lines, ElementsAre(Unknown(2)));
}

TEST(IOLoadObj, ReportsNothingBehindALastLineThatEndsInABlank)
{
    EXPECT_THAT(Parsed("v 0 0 0 ").lines, IsEmpty());
    EXPECT_THAT(Parsed("v 0 0 0\n# two\t").lines, IsEmpty());
}

TEST(IOLoadObj, ReportsTheFirstLineOfAnEmptyText)
{
    EXPECT_THAT(Parsed("").lines, ElementsAre(Unknown(1)));
}

TEST(IOLoadObj, ReportsALineThatStartsWithAZero)
{
    EXPECT_THAT(Parsed(std::string("\0v 0 0 0", 8)).lines, ElementsAre(Unknown(1)));
}

TEST(IOLoadObj, ReadsCarriageReturnsBeforeNewlinesAsLineEndsOfNumbers)
{
    const Parsed parsed(
        "v 1 2 3\r\nvt 0.5 1\r\nf 1 2 3\r\nf 1//4 2//5 3//6\r\nf 1/1 2/2 3/3 \r\nf \\\r\n7 8 9\r\n");
    EXPECT_THAT(NumbersOf(parsed.reader.GetPositions()), ElementsAre(1.0, 2.0, 3.0));
    EXPECT_THAT(NumbersOf(parsed.reader.GetTexCoords()), ElementsAre(0.5F, 1.0F));
    EXPECT_THAT(parsed.reader.GetFaceSizes(), ElementsAre(3, 3, 3, 3));
    EXPECT_THAT(parsed.reader.GetNormalIndices(), ElementsAre(4, 5, 6));
    EXPECT_THAT(parsed.lines, ElementsAre(Unknown(7)));
}

TEST(IOLoadObj, KeepsTheCarriageReturnOfAName)
{
    EXPECT_THAT(Parsed("usemtl a\r\n").reader.GetGroupNames(), ElementsAre(Pair(1, "a\r")));
}

TEST(IOLoadObj, ReadsLinesPastAKibibyte)
{
    std::string text = "f";
    for (int i = 0; i < 5000; ++i)
    {
        text += " 1";
    }
    EXPECT_THAT(Parsed(text).reader.GetFaceSizes(), ElementsAre(5000));
}

TEST(IOLoadObj, ParsesAnewOnASecondText)
{
    Parsed parsed("usemtl a\nv 1 2 3");
    ConsoleCapture console;
    parsed.reader.ParseText("second.obj", "x\nv 1 2 3\nf 1 1 1");
    EXPECT_FALSE(parsed.reader.UsesMaterial());
    EXPECT_THAT(parsed.reader.GetFaceGroups(), ElementsAre(0));
    EXPECT_THAT(console.GetLines(), ElementsAre(Unknown(1)));
}

/// Lines that look like an OBJ file's, and now and then do not.
std::string RandomText(std::mt19937& random)
{
    static constexpr const char* kStarts[] = {"v ",      "vn", "vt ",       "f ",     "f", "F 1/2",
                                              "usemtl ", "u",  "o ",        "f \\\n", "#", "g ",
                                              "V ",      "v",  "f 1//2 3 ", "\xFF"};
    static constexpr char kCharacters[] = "0123456789//  .-+e\\\t\r\n";
    std::string text;
    for (auto lines = random() % 6; lines > 0; --lines)
    {
        text += kStarts[random() % std::size(kStarts)];
        for (auto length = random() % 16; length > 0; --length)
        {
            text += kCharacters[random() % sizeof kCharacters];
        }
        text += random() % 4 != 0 ? "\n" : "\r\n";
    }
    text.resize(text.size() - std::min<std::size_t>(text.size(), random() % 4));
    return text;
}

TEST(IOLoadObj, ParsesRandomTextsAsTheLiteralReaderDoes)
{
    std::mt19937 random(314159);
    for (int i = 0; i < 20000 && !HasFailure(); ++i)
    {
        const std::string text = RandomText(random);
        SCOPED_TRACE(::testing::PrintToString(text));
        LiteralObjReader literal;
        literal.Parse(text);
        const Parsed parsed(text);
        std::vector<std::string> unknown;
        for (const int line : literal.m_UnknownLines)
        {
            unknown.push_back(Unknown(line));
        }
        EXPECT_EQ(parsed.lines, unknown);
        EXPECT_EQ(NumbersOf(parsed.reader.GetPositions()), literal.m_Positions);
        EXPECT_EQ(NumbersOf(parsed.reader.GetNormals()), literal.m_Normals);
        EXPECT_EQ(NumbersOf(parsed.reader.GetTexCoords()), literal.m_TexCoords);
        EXPECT_EQ(parsed.reader.GetVertexIndices(), literal.m_VertexIndices);
        EXPECT_EQ(parsed.reader.GetFaceSizes(), literal.m_FaceSizes);
        EXPECT_EQ(parsed.reader.GetTexIndices(), literal.m_TexIndices);
        EXPECT_EQ(parsed.reader.GetNormalIndices(), literal.m_NormalIndices);
        EXPECT_EQ(parsed.reader.GetFaceGroups(), literal.m_FaceGroups);
        EXPECT_EQ(parsed.reader.GetGroupNames(), literal.m_GroupNames);
    }
}

TEST(IOLoadObj, NamesTheLineOfAVertexNumberBeyondTheList)
{
    EXPECT_EQ(Parsed("\nv 0 0 0\n\nf 1 1 1\nf 1 2 1\nf 3 1 1").failureText,
              "model.obj, line 5: there is no vertex 2, the file has 1");
}

TEST(IOLoadObj, NamesTheByteOrderMarkThatHidesAVertex)
{
    EXPECT_EQ(Parsed("\xEF\xBB\xBFv 0 0 0\nv 1 0 0\nf 1 1 2").failureText,
              "model.obj, line 3: there is no vertex 2, the file has 1; a byte-order mark hides the first "
              "line; save "
              "the file without it");
}

TEST(IOLoadObj, RefusesFacesWithoutVertices)
{
    EXPECT_EQ(Parsed("f 1 2 3").failureText, "model.obj, line 1: there is no vertex 1, the file has 0");
}

TEST(IOLoadObj, TakesFacesInFrontOfTheirVertices)
{
    EXPECT_EQ(Parsed("f 1 2 3\nv 0 0 0\nv 1 0 0\nv 0 1 0").failureText, "");
}

TEST(IOLoadObj, NamesTheLineOfAVertexNumberZero)
{
    EXPECT_EQ(Parsed("v 0 0 0\nf 1 0 1").failureText,
              "model.obj, line 2: the vertex number of a corner is 0 or missing; numbers start at 1, and a "
              "corner is written 1, 1/1, 1//1 or 1/1/1");
}

TEST(IOLoadObj, NamesRelativeNumbersAsWhatTheyAre)
{
    EXPECT_EQ(
        Parsed("v 0 0 0\nf -1 -2 -3").failureText,
        "model.obj, line 2: the relative vertex number -1 is not understood; number from the start of the "
        "file");
}

TEST(IOLoadObj, NamesTheLineOfAVertexNumberBeyond32Bits)
{
    EXPECT_EQ(Parsed("v 0 0 0\nf 1 1 4294967297").failureText,
              "model.obj, line 2: there is no vertex 2147483647 or above, the file has 1");
}

TEST(IOLoadObj, NamesTheLineOfTheFaceAndNotOfItsContinuation)
{
    EXPECT_EQ(Parsed("v 0 0 0\nf \\\nf 1 1\n\nf \\\n1 1 2").failureText,
              "model.obj, line 2: the vertex number of a corner is 0 or missing; numbers start at 1, and a "
              "corner is written 1, 1/1, 1//1 or 1/1/1");
    EXPECT_EQ(Parsed("v 0 0 0\nf \\\n1 1 1\n\nf \\\n1 1 2").failureText,
              "model.obj, line 5: there is no vertex 2, the file has 1");
}

TEST(IOLoadObj, NamesTheLineOfAPositionThatIsNotFinite)
{
    EXPECT_EQ(Parsed("vn 1e99 0 0\nv 0 0 0\nf \\\nv 1e99\nv 0 1e999 0").failureText,
              "model.obj, line 5: a coordinate is too large, or has too many digits, for single precision");
}

TEST(IOLoadObj, NamesTheLineOfAFaceWithoutCorners)
{
    EXPECT_EQ(Parsed("v 0 0 0\nf 1 1 1\nf").failureText, "model.obj, line 3: a face without corners");
    EXPECT_EQ(Parsed("f \r\n").failureText, "model.obj, line 1: a face without corners");
    EXPECT_EQ(Parsed("f \\\n").failureText, "model.obj, line 1: a face without corners");
}

TEST(IOLoadObj, ChecksTextureNumbersOnlyWhereAMaterialLineMakesThemCount)
{
    EXPECT_EQ(Parsed("v 0 0 0\nf 1/1 1/7 1/-1").failureText, "");
    EXPECT_EQ(Parsed("usemtl a\nv 0 0 0\nvt 0 0\nf 1/1 1/7 1/1").failureText,
              "model.obj, line 4: there is no texture coordinate 7, the file has 1");
    EXPECT_EQ(
        Parsed("usemtl a\nv 0 0 0\nvt 0 0\nf 1/1 1/-1 1/1").failureText,
        "model.obj, line 4: the relative texture coordinate number -1 is not understood; number from the "
        "start of the file");
}

TEST(IOLoadObj, NamesTheFirstFaceWhoseCornersDisagreeOnTextureNumbers)
{
    const std::string reason =
        "some corners of the file have a texture number and some have none, from this face "
        "on; give one to all of them, or to none";
    EXPECT_EQ(Parsed("usemtl a\nv 0 0 0\nvt 0 0\nf 1/1 1/1 1/1\nf 1 1/1 1/1").failureText,
              "model.obj, line 5: " + reason);
    EXPECT_EQ(Parsed("usemtl a\nv 0 0 0\nvt 0 0\nf 1 1 1\nf 1/1 1/1 1/1").failureText,
              "model.obj, line 4: " + reason);
}

TEST(IOLoadObj, TakesFacesWithoutAnyTextureNumbersUnderAMaterialLine)
{
    EXPECT_EQ(Parsed("usemtl a\nv 0 0 0\nf 1 1 1\nf 1//1 1//1 1//1").failureText, "");
}
}
}

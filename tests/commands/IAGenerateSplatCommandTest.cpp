#include "IAGenerateSplatCommand.h"
#include "Capture.h"
#include "IODatasetImages.h"
#include "MANSceneManager.h"
#include "Refusal.h"
#include "Silhouettes.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::HasSubstr;

constexpr char kIdentity[] = "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1\n";

/// A folder with marked images, of four by two pixels where nothing else is said.
class SplatTest : public testing::Test
{
protected:
    void WriteCameras(const std::vector<std::string>& views, const std::string& size = "4 2") const
    {
        std::string text = std::to_string(views.size()) + '\n' + size + '\n';
        for (const std::string& view : views)
        {
            text += view;
        }
        m_Folder.Write("data/man/param.dat", text);
    }

    void WriteUnitizing(const std::string& text) const { m_Folder.Write("data/man/unitize.dat", text); }

    static void WritePicture(int number, const std::vector<std::string_view>& rows)
    {
        const DrawnImage drawn(rows);
        WriteDatasetImage({drawn.width, drawn.height, 3, drawn.pixels}, "data\\man\\", number);
    }

    const std::vector<CutFace>& Generate()
    {
        IAGenerateSplatCommand command;
        command.SetSceneManager(&m_Scene);
        command.Execute();
        return m_Scene.GetCutFaceList();
    }

    std::string RefuseToGenerate()
    {
        return GetRefusal([this] { Generate(); });
    }

    TemporaryCurrentFolder m_Folder;
    MANSceneManager m_Scene;
};

testing::AssertionResult IsAt(const smVec3d& point, double x, double y, double z)
{
    if ((point - smVec3d(x, y, z)).Length() < 1e-6)
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << point.x << ' ' << point.y << ' ' << point.z;
}

TEST_F(SplatTest, StandsOnTheFirstAndTheLastMarker)
{
    WriteCameras({kIdentity});
    WriteUnitizing("0 0 0 1\n2 1\n");
    WritePicture(1, {"..m.", "mm#."});
    // One pixel a unit: (2, 0) is (0, -1) and (1, 1) is (-1, 0); the markers between do not count.
    const CutFace& splat = Generate().at(0);
    EXPECT_TRUE(IsAt(splat[0], 0, -1, 0.2));
    EXPECT_TRUE(IsAt(splat[1], -1, 0, 0.2));
    EXPECT_TRUE(IsAt(splat[2], -1, 0, -0.2));
    EXPECT_TRUE(IsAt(splat[3], 0, -1, -0.2));
    EXPECT_EQ(splat[0].z, double{0.2F});
}

TEST_F(SplatTest, IsTurnedBackFromItsViewAndUnitised)
{
    WriteCameras({"0 1 0 0 -1 0 0 0 0 0 1 0 0 0 0 1\n"}); // x' = -y, y' = x
    WriteUnitizing("1 2 3 10\n2 1\n");
    WritePicture(1, {"..m.", "...."});
    // (0, -1, 0.2) of the view is x = y' = -1, y = -x' = 0; then ten times what is left of the centre.
    EXPECT_TRUE(IsAt(Generate().at(0)[0], -20, -20, static_cast<double>((0.2F - 3.0F) * 10)));
}

TEST_F(SplatTest, TakesPixelsOfAUnitThatAreNoWholeNumber)
{
    WriteCameras({kIdentity}, "5 3");
    WriteUnitizing("0 0 0 1\n2 1\n");
    WritePicture(1, {".....", "....m", "....."});
    // 5 / (2 * 2) = 1.25 across and 3 / (2 * 1) = 1.5 down: 4 / 1.25 - 2 and 1 / 1.5 - 1.
    EXPECT_TRUE(IsAt(Generate().at(0)[0], 1.2, -1.0 / 3, 0.2));
}

TEST_F(SplatTest, IsUnitisedInSinglePrecision)
{
    WriteCameras({kIdentity}, "5 3");
    WriteUnitizing("0.1 -0.2 0.3 1.7\n2 1\n");
    WritePicture(1, {".....", "....m", "....."});
    const smVec3d& corner = Generate().at(0)[0];
    EXPECT_EQ(corner.x, double{1.7F * (static_cast<float>(4 / 1.25 - 2) - 0.1F)});
    EXPECT_EQ(corner.y, double{1.7F * (static_cast<float>(1 / 1.5 - 1) + 0.2F)});
    EXPECT_EQ(corner.z, double{1.7F * (0.2F - 0.3F)});
}

TEST_F(SplatTest, IsTurnedAndMovedBackBeforeItIsUnitised)
{
    // About the vertical by (0.6, 0.8), then about the horizontal by (0.8, 0.6), then moved.
    WriteCameras({"0.6 0.48 -0.64 0  0 0.8 0.6 0  0.8 -0.36 0.48 0  0.25 -0.5 0.125 1\n"});
    WriteUnitizing("0.1 -0.2 0.3 1.7\n2 1\n");
    WritePicture(1, {"..m.", "...m"});
    // A rotation is undone by the products with its rows.
    const smVec3d rows[] = {{0.6, 0.48, -0.64}, {0, 0.8, 0.6}, {0.8, -0.36, 0.48}};
    const smVec3d inView[] = {{0, -1, 0.2}, {1, 0, 0.2}, {1, 0, -0.2}, {0, -1, -0.2}};
    const CutFace& splat = Generate().at(0);
    for (std::size_t i = 0; i < 4; ++i)
    {
        const smVec3d turned = inView[i] - smVec3d(0.25, -0.5, 0.125);
        EXPECT_TRUE(IsAt(splat[i], 1.7 * (turned.Dot(rows[0]) - 0.1), 1.7 * (turned.Dot(rows[1]) + 0.2),
                         1.7 * (turned.Dot(rows[2]) - 0.3)))
            << i;
    }
}

TEST_F(SplatTest, HasNoWidthForASingleMarker)
{
    WriteCameras({kIdentity});
    WriteUnitizing("0 0 0 1\n2 1\n");
    WritePicture(1, {"....", ".m.."});
    const CutFace& splat = Generate().at(0);
    EXPECT_TRUE(IsAt(splat[0], splat[1].x, splat[1].y, splat[1].z));
    EXPECT_TRUE(IsAt(splat[2], splat[3].x, splat[3].y, splat[3].z));
}

TEST_F(SplatTest, GoesOnBehindAnImageWithoutMarkersAndAddsWithEachRun)
{
    WriteCameras({kIdentity, kIdentity, kIdentity});
    WriteUnitizing("0 0 0 1\n2 1\n");
    WritePicture(1, {"..m.", "...."});
    WritePicture(2, {".##.", "...."});
    WritePicture(3, {"m...", "...m"});
    EXPECT_EQ(Generate().size(), 2U);
    EXPECT_EQ(Generate().size(), 4U);
}

TEST_F(SplatTest, AddsASplatForEachOfNinetyImages)
{
    WriteCameras(std::vector<std::string>(90, kIdentity));
    WriteUnitizing("0 0 0 1\n2 1\n");
    for (int i = 1; i <= 90; ++i)
    {
        WritePicture(i, {"m..m", "...."});
    }
    EXPECT_EQ(Generate().size(), 90U);
}

TEST_F(SplatTest, NeedsAnInverseOnlyWhereItIsUsed)
{
    const std::string singular = "0 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1\n";
    WriteCameras({singular});
    WriteUnitizing("0 0 0 1\n2 1\n");
    WritePicture(1, {"....", ".#.."});
    EXPECT_TRUE(Generate().empty());
    WritePicture(1, {"....", ".m.."});
    EXPECT_THAT(RefuseToGenerate(),
                testing::StartsWith("data/man/param.dat, line 3: the camera of image 1 has no inverse"));
}

TEST_F(SplatTest, NamesWhatIsMissing)
{
    EXPECT_THAT(RefuseToGenerate(), HasSubstr("data/man/param.dat"));
    WriteCameras({kIdentity});
    EXPECT_THAT(RefuseToGenerate(), HasSubstr("data/man/unitize.dat"));
    WriteUnitizing("0 0 0 1\n0 1\n");
    EXPECT_THAT(RefuseToGenerate(), HasSubstr("unitize.dat, line 2"));
    WriteUnitizing("0 0 0 1\n2 1\n");
    EXPECT_THAT(RefuseToGenerate(), HasSubstr("data/man/1.bmp"));
    WritePicture(1, {"....", "....", "...."});
    EXPECT_THAT(RefuseToGenerate(),
                HasSubstr("data/man/1.bmp is 4 x 3 pixels, and data/man/param.dat, line 2 says 4 x 2"));
}

TEST_F(SplatTest, TellsWhereNoImageHasAMarker)
{
    WriteCameras({kIdentity});
    WriteUnitizing("0 0 0 1\n2 1\n");
    WritePicture(1, {"....", ".#.."});
    {
        const ErrorLineCapture errors;
        EXPECT_TRUE(Generate().empty());
        EXPECT_THAT(errors.GetText(), HasSubstr("no image of data/man has a marker"));
    }
    WritePicture(1, {"....", ".m.."});
    const ErrorLineCapture errors;
    Generate();
    EXPECT_EQ(errors.GetText(), "");
}

TEST_F(SplatTest, RefusesAScaleThatLeavesSinglePrecision)
{
    WriteCameras({kIdentity});
    WriteUnitizing("0 0 0 3e38\n20 10\n");
    WritePicture(1, {"..m.", "...."}); // at (0, -10), far from the centre
    EXPECT_THAT(RefuseToGenerate(),
                testing::StartsWith("data/man/unitize.dat, line 1: with this centre and scale"));
    EXPECT_TRUE(m_Scene.GetCutFaceList().empty());
}

TEST(IAGenerateSplatCommand, AssertsItsScene)
{
    const AssertionCapture assertions;
    EXPECT_THROW(IAGenerateSplatCommand().Execute(), AssertionFailure);
}
}
}

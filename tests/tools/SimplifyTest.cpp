#include "Failure.h"
#include "IACommandRouter.h"
#include "LinksHold.h"
#include "Picture.h"
#include "RandomMeshes.h"
#include "WorkbenchTest.h"
#include "resource.h"
#include <limits>

namespace tessarine
{
namespace
{
using testing::HasSubstr;

class SimplifyTest : public WorkbenchTest
{
protected:
    bool Simplify(float ratio)
    {
        return m_Bench.Perform("simplify", Effect::Adds, [this, ratio] { GetController().Simplify(ratio); });
    }

    DSSolid* GetChildSolid(std::size_t index)
    {
        return static_cast<MANSceneLeaf*>(GetScene().GetRootGroup()->GetChildren().at(index))->GetSolid();
    }

    std::size_t CountFaces(std::size_t child) { return GetChildSolid(child)->GetFaceList().size(); }
};

TEST_F(SimplifyTest, LeavesTheShareThatTheMenuEntryNames)
{
    Show(Shaken(Sphere(3), 1))->CalcNormals();
    IACommandRouter router(m_Bench);
    EXPECT_TRUE(router.Run("menu", ResourceID::Simplify20));
    EXPECT_TRUE(router.Run("menu", ResourceID::Simplify50));
    EXPECT_TRUE(router.Run("menu", ResourceID::Simplify80));
    // Of 512 faces 409, 256 and 102 are to go, two at a time.
    EXPECT_EQ(CountFaces(1), 102U);
    EXPECT_EQ(CountFaces(2), 256U);
    EXPECT_EQ(CountFaces(3), 410U);
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 3U);
}

TEST_F(SimplifyTest, CanBeTakenBackByAFailureOfWhatFollows)
{
    DSSolid* solid = Show(Shaken(Sphere(2), 2));
    solid->CalcNormals();
    const std::string before = PictureOf(m_Bench);
    EXPECT_FALSE(m_Bench.Perform("simplify", Effect::Adds,
                                 [this]
                                 {
                                     GetController().Simplify(0.5F);
                                     throw Failure("no");
                                 }));
    EXPECT_EQ(PictureOf(m_Bench), before);
    EXPECT_TRUE(Simplify(0.5F));
    EXPECT_TRUE(LinksHold(*GetChildSolid(1)));
}

TEST_F(SimplifyTest, LeavesTheModelWhereARimEdgeHasNoLength)
{
    IndexedMesh mesh = Grid(3);
    mesh.positions[1] = mesh.positions[0];
    Show(mesh)->CalcNormals();
    const std::string before = PictureOf(m_Bench);
    EXPECT_FALSE(Simplify(0.5F));
    EXPECT_EQ(PictureOf(m_Bench), before);
    EXPECT_EQ(m_Platform.GetOnlyReason(),
              "( between the vertices 1 and 2 of a rim ) a division by zero, or a vector of length zero; the "
              "model is as it was");
}

TEST_F(SimplifyTest, NamesTheVerticesOfAFaceWithoutAreaAtTheRim)
{
    const IndexedMesh mesh{{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}}, {1, 2, 3, 1, 4, 2}, {3, 3}};
    Show(mesh)->CalcNormals();
    EXPECT_FALSE(Simplify(0.5F));
    EXPECT_EQ(m_Platform.GetOnlyReason(),
              "( between the vertices 1 and 3 of a rim ) a division by zero, or a vector of length zero; the "
              "model is as it was");
}

TEST_F(SimplifyTest, LeavesTheModelWhereTheShareIsNone)
{
    Show(Tetrahedron());
    const std::string before = PictureOf(m_Bench);
    for (const float ratio : {-1.0F, 2.0F, std::numeric_limits<float>::quiet_NaN()})
    {
        EXPECT_FALSE(Simplify(ratio));
        EXPECT_THAT(m_Platform.GetFailures().back().reason, HasSubstr("a number from 0 to 1"));
        EXPECT_EQ(PictureOf(m_Bench), before);
    }
}

TEST_F(SimplifyTest, IsToldThatThereIsNoModel)
{
    EXPECT_FALSE(Simplify(0.5F));
    EXPECT_EQ(m_Platform.GetOnlyReason(), "simplification needs a model: import one first");
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 0U);
}

TEST_F(SimplifyTest, GivesAModelThatImportsAgain)
{
    m_Folder.Write("model.obj", kTetrahedronObj);
    ASSERT_TRUE(Import("model.obj"));
    GetController().SubdivideLoop();
    GetController().SubdivideLoop();
    ASSERT_TRUE(Simplify(0.5F));
    const std::size_t children = GetScene().GetRootGroup()->GetChildren().size();
    const std::size_t faces = CountFaces(children - 1);
    EXPECT_LE(faces, 32U);
    m_Platform.AnswerFile("out.obj");
    ASSERT_TRUE(m_Bench.Perform("export", Effect::None, [this] { m_Bench.ExportObj(); }));
    ASSERT_TRUE(Import("out.obj"));
    EXPECT_EQ(CountFaces(0), faces);
    EXPECT_TRUE(LinksHold(*GetChildSolid(0)));
}
}
}

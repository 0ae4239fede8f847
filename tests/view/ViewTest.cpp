#include "ViewTest.h"
#include "Capture.h"
#include <cstdlib>

namespace tessarine
{
ViewTest::ViewTest()
{
    m_View.SetController(&m_Controller, &m_Scene, &m_Elements);
}

MANSceneLeaf* ViewTest::Show(DSSolid* solid)
{
    return m_Scene.AppendLeaf(solid);
}

std::vector<std::string> ViewTest::DrawCounters()
{
    m_View.Redraw();
    return {GetTestPlatform().GetPaneText(1), GetTestPlatform().GetPaneText(2)};
}

Rgb GetPixel(const Image& picture, int x, int y)
{
    const std::uint8_t* bytes =
        &picture.pixels.at(std::size_t{3} * static_cast<unsigned>(y * picture.width + x));
    return {bytes[0], bytes[1], bytes[2]};
}

Rgb GetCentre(const Image& picture)
{
    return GetPixel(picture, picture.width / 2, picture.height / 2);
}

bool IsNear(const Rgb& a, const Rgb& b)
{
    return std::abs(a[0] - b[0]) <= 1 && std::abs(a[1] - b[1]) <= 1 && std::abs(a[2] - b[2]) <= 1;
}

int Count(const Image& picture, const Rgb& color)
{
    int count = 0;
    for (int y = 0; y < picture.height; ++y)
    {
        for (int x = 0; x < picture.width; ++x)
        {
            count += IsNear(GetPixel(picture, x, y), color) ? 1 : 0;
        }
    }
    return count;
}

int CountLit(const Image& picture)
{
    return picture.width * picture.height - Count(picture, kBlack);
}

DrawnViewTest::DrawnViewTest()
{
    GetTestPlatform().SetViewSize(kWidth, kHeight);
    m_View.GetCamera()->SetLookAt(smVec3d(0.0, 0.0, 5.0), smVec3d(0.0, 0.0, 0.0), smVec3d(0.0, 1.0, 0.0));
}

DrawnViewTest::~DrawnViewTest()
{
    GetTestPlatform().SetWatched(true);
}

void DrawnViewTest::SetUp()
{
    ASSERT_EQ(m_View.Create(), 0) << "this test draws, and cannot: " << m_View.GetCreateError();
    m_View.InitState();
    m_View.Resize(0, 0, kWidth, kHeight);
}

Image DrawnViewTest::Draw(std::uint32_t flags)
{
    m_View.SetDisplayFlags(flags);
    return m_View.TakePicture();
}

DSSolid* DrawnViewTest::ShowSquare(double z)
{
    IndexedMesh square;
    square.positions = {smVec3d(-1.0, -1.0, z), smVec3d(1.0, -1.0, z), smVec3d(1.0, 1.0, z),
                        smVec3d(-1.0, 1.0, z)};
    square.AddFace({1, 2, 3, 4});
    DSSolid* solid = Build(square);
    solid->CalcNormals();
    Show(solid);
    return solid;
}
}

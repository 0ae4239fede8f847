#pragma once
#include "Image.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Meshes.h"
#include "Open3DView.h"
#include <array>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace tessarine
{
/// The view knows the controller by name only.
class IAController
{
};

/// A view that is joined to a scene, without a surface.
class ViewTest : public testing::Test
{
protected:
    ViewTest();

    DSSolid* Build(const IndexedMesh& mesh) { return LoadQuietly(m_Elements, mesh); }

    /// A leaf of the root. A null solid is none.
    MANSceneLeaf* Show(DSSolid* solid);

    /// Panes 1 and 2 after a frame.
    std::vector<std::string> DrawCounters();

    IAController m_Controller;
    MANSceneManager m_Scene;
    MANBrepElementManager m_Elements;
    Open3DView m_View;
};

using Rgb = std::array<int, 3>;

inline constexpr Rgb kBlack{0, 0, 0};
inline constexpr Rgb kWhite{255, 255, 255};
inline constexpr Rgb kRed{255, 0, 0};
inline constexpr Rgb kGreen{0, 255, 0};
inline constexpr Rgb kBlue{0, 0, 255};
inline constexpr Rgb kYellow{255, 255, 0};
inline constexpr Rgb kCyan{0, 255, 255};
inline constexpr Rgb kEdge{128, 179, 102}; ///< (0.5, 0.7, 0.4) in bytes

/// y counts from the bottom, as in the image.
Rgb GetPixel(const Image& picture, int x, int y);
Rgb GetCentre(const Image& picture);
bool IsNear(const Rgb& a, const Rgb& b);
/// The pixels of a colour; one off in a component counts as well, as GL rounds either way.
int Count(const Image& picture, const Rgb& color);
int CountLit(const Image& picture);

/// A view with a surface of 120 x 90 pixels. The eye stands on the z axis, 5 from the origin: a unit is
/// 90 / (2 * 5 * tan 22.5) = 21.7 pixels long there.
class DrawnViewTest : public ViewTest
{
protected:
    static constexpr int kWidth = 120;
    static constexpr int kHeight = 90;

    DrawnViewTest();
    ~DrawnViewTest() override;
    void SetUp() override;

    Image Draw(std::uint32_t flags);

    /// A square of the plane z, from -1 to 1, that looks at the eye.
    DSSolid* ShowSquare(double z = 0.0);
};
}

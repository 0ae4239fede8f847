#pragma once
#include "GLSurface.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Meshes.h"
#include "Open3DView.h"
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace tessarine
{
/// What a surface shows: four bytes a pixel, row 0 at the bottom.
struct Picture
{
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bytes;
};

/// Whether all pixels are the same. Tells how many are not, within which rectangle, and the first of them.
testing::AssertionResult SamePictures(const Picture& actual, const Picture& expected);

/// As 0xC.
std::string TellFlags(std::uint32_t flags);

/// A view on a surface of its own, and the literal form of its frames on another. Both see the same frames in
/// the same order, so that what a frame leaves in the graphics library meets the next one on both sides.
class FrameComparison : public testing::Test
{
protected:
    static constexpr int kWidth = 240;
    static constexpr int kHeight = 200;

    FrameComparison();
    ~FrameComparison() override;

    /// One frame by each: whether they are the same in every pixel. `drawn` counts what is not background.
    testing::AssertionResult SameFrames(std::uint32_t flags, int& drawn);
    /// The same, and whether something was drawn.
    testing::AssertionResult SameFrames(std::uint32_t flags);

    /// How many pixels are not of the view's clear colour.
    int CountDrawnPixels(const Picture& picture) const;

    Picture DrawByView(std::uint32_t flags);
    Picture DrawLiterally(std::uint32_t flags);

    /// A solid with normals, as an import leaves it, but where it is.
    DSSolid* Build(const IndexedMesh& mesh);
    MANSceneLeaf* Show(DSSolid* solid);
    DSSolid* BuildAndShow(const IndexedMesh& mesh) { return Show(Build(mesh))->GetSolid(); }
    MANSceneLeaf* ShowUnder(MANSceneGroup* group, DSSolid* solid);
    DSMaterial* AddMaterial(const smVec3f& color, float transparency = 1.0F);
    /// A material whose texture is this image.
    DSMaterial* AddTexturedMaterial(int width, int height, int components, std::vector<std::uint8_t> pixels);
    /// The unit square with texture coordinates at its corners.
    DSSolid* BuildTexturedSquare(const smVec2f& low, const smVec2f& high);

    /// Looks at the origin.
    void LookFrom(const smVec3d& eye) { LookFrom(eye, smVec3d(0, 0, 0)); }
    void LookFrom(const smVec3d& eye, const smVec3d& target);

    MANSceneManager m_Scene;
    MANBrepElementManager m_Elements;
    Open3DView m_View;

private:
    Picture ReadPicture() const;

    std::unique_ptr<GLSurface> m_pLiteralSurface;
};
}

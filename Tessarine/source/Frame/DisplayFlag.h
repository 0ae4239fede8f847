#pragma once
#include <cstdint>

/// The switches of the view, one bit each.
namespace tessarine::DisplayFlag
{
inline constexpr std::uint32_t Grid = 0x1;
inline constexpr std::uint32_t Axes = 0x2;
inline constexpr std::uint32_t Wire = 0x4;
inline constexpr std::uint32_t FlatShading = 0x8;
inline constexpr std::uint32_t Texture = 0x10;
inline constexpr std::uint32_t BoundaryEdges = 0x20;
inline constexpr std::uint32_t LineSmoothing = 0x40;
inline constexpr std::uint32_t PolygonSmoothing = 0x80;
inline constexpr std::uint32_t Blending = 0x100;
inline constexpr std::uint32_t Points = 0x200;
inline constexpr std::uint32_t Octree = 0x400;
inline constexpr std::uint32_t PointCloud = 0x800;
inline constexpr std::uint32_t PointNormals = 0x1000;
inline constexpr std::uint32_t SmoothShading = 0x2000;
inline constexpr std::uint32_t ProjectedPoints = 0x4000;
inline constexpr std::uint32_t ProjectionLines = 0x8000;
inline constexpr std::uint32_t NewMesh = 0x10000;
inline constexpr std::uint32_t CutFaces = 0x20000;
}

#pragma once
#include <cstddef>
#include <memory>
#include <vector>

namespace tessarine::bench
{
/// The library's marching cubes over samples on the grid of a DistanceField, without normals and colours.
class PeerSurface
{
public:
    /// @param values k fastest
    explicit PeerSurface(const std::vector<float>& values);
    ~PeerSurface();
    PeerSurface(const PeerSurface&) = delete;
    PeerSurface& operator=(const PeerSurface&) = delete;

    /// Computes the level zero anew.
    /// @return how many triangles
    std::size_t Run();

private:
    struct Pipeline;
    std::unique_ptr<Pipeline> m_pPipeline;
};
}

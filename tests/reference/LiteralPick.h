#pragma once
#include <cstdint>

namespace tessarine
{
class DSFace;
class MANSceneManager;
class Open3DCamera;

struct LiteralHit
{
    bool isHit = false;
    std::uint32_t id = 0;
    friend bool operator==(const LiteralHit&, const LiteralHit&) = default;
};

/// What IASelectCommand finds, by the sum of angles of every face, one after the other, with nothing left out
/// and nothing shared with the command. Changes no normal.
LiteralHit PickLiterally(const MANSceneManager& scene, const Open3DCamera& camera, std::uint32_t kind, int x,
                         int y);
}

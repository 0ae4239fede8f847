#pragma once
#include <cstddef>

namespace tessarine
{
class MANBrepElementManager;
class MANSceneManager;
class Open3DView;

/// What dump and report look at.
struct BatchDocument
{
    const MANBrepElementManager& elements;
    const MANSceneManager& scene;
    const Open3DView& view;
    std::size_t historySize = 0; ///< commands kept
    unsigned toolID = 0;         ///< of the tool on top of the stack
};
}

#pragma once
#include "smVec3f.h"
#include <cstdint>
#include <memory>
#include <vector>

namespace tessarine
{
class Open3DCamera;
struct Open3DLight;

/// The steps that begin a frame. Those that call GL need a current context.

/// What a context keeps for all frames: depth test, culling of back faces, smooth shading.
void SetFixedState();

/// Projection and view transform.
void SetCamera(const Open3DCamera& camera);

using LightList = std::vector<std::shared_ptr<Open3DLight>>;

/// Gives every light to GL anew, under the view transform, and turns lighting on. GL refuses those beyond its
/// own number of lights.
///
/// Kept    A light that left the list stays on with its last values.
void SetLights(const LightList& lights);

/// Says    "Ambient:(r,g,b)" for each light whose ambient colour is sent, "Specular:(r,g,b)" likewise.
void SayLights(const LightList& lights);

void ClearFrame(const smVec3f& color);

/// Smoothing and blending, by the view's switches (DisplayFlag).
///
/// Kept    The switch of blending has the last word.
void SetRasterState(std::uint32_t displayFlags);

}

#pragma once
#include "smVec3f.h"
#include "smVec4f.h"
#include <string>

namespace tessarine
{
/// One light of the scene. Its place in the light list is its number in the graphics library.
struct Open3DLight
{
    Open3DLight() = default;
    Open3DLight(const Open3DLight&) = default;
    Open3DLight& operator=(const Open3DLight&) = default;
    Open3DLight(Open3DLight&&) = default;
    Open3DLight& operator=(Open3DLight&&) = default;
    virtual ~Open3DLight() = default;

    std::string m_Name;
    bool m_bAmbient = false; ///< whether the ambient colour is sent to the graphics library
    bool m_bDiffuse = true;
    bool m_bSpecular = false;
    smVec3f m_Ambient;
    smVec3f m_Diffuse{0.7F, 0.7F, 0.7F};
    smVec3f m_Specular;
    smVec4f m_Position;     ///< world space; a fourth value of 0 makes a directional light
    bool m_bEnabled = true; ///< stored only
};
}

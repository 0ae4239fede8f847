#include "FrameSetup.h"
#include "Console.h"
#include "DisplayFlag.h"
#include "Open3DCamera.h"
#include "Open3DLight.h"
#include <GL/gl.h>
#include <GL/glu.h>

namespace tessarine
{
namespace
{
void SetLightColor(GLenum light, GLenum name, const smVec3f& color)
{
    const float values[] = {color.x, color.y, color.z, 1.0F};
    glLightfv(light, name, values);
}

void SayColor(const char* name, const smVec3f& color)
{
    DebugConsole() << name << ":(" << color.x << "," << color.y << "," << color.z << ")" << '\n';
}

void BlendByAlpha()
{
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

/// Draws smooth, or with sharp rims, what `capability` names.
void SetSmoothing(GLenum capability, GLenum hint, bool enabled)
{
    if (!enabled)
    {
        glDisable(capability);
        glDisable(GL_BLEND);
        return;
    }
    glEnable(capability);
    BlendByAlpha();
    glHint(hint, GL_NICEST);
}
}

void SetFixedState()
{
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_DEPTH_TEST);
    glCullFace(GL_BACK);
    glEnable(GL_CULL_FACE);
    glHint(GL_POLYGON_SMOOTH_HINT, GL_NICEST);
    glShadeModel(GL_SMOOTH);
}

void SetCamera(const Open3DCamera& camera)
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(camera.GetFovy(), camera.GetAspect(), camera.GetNear(), camera.GetFar());
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    const smVec3d eye = camera.GetPosition();
    const smVec3d target = camera.GetTarget();
    const smVec3d up = camera.GetUp();
    gluLookAt(eye.x, eye.y, eye.z, target.x, target.y, target.z, up.x, up.y, up.z);
}

void SetLights(const LightList& lights)
{
    GLenum number = GL_LIGHT0;
    for (const auto& pLight : lights)
    {
        if (pLight->m_bAmbient)
        {
            SetLightColor(number, GL_AMBIENT, pLight->m_Ambient);
        }
        if (pLight->m_bDiffuse)
        {
            SetLightColor(number, GL_DIFFUSE, pLight->m_Diffuse);
        }
        if (pLight->m_bSpecular)
        {
            SetLightColor(number, GL_SPECULAR, pLight->m_Specular);
        }
        const float position[] = {pLight->m_Position.x, pLight->m_Position.y, pLight->m_Position.z,
                                  pLight->m_Position.w};
        glLightfv(number, GL_POSITION, position);
        glEnable(number);
        ++number;
    }
    glEnable(GL_LIGHTING);
}

void SayLights(const LightList& lights)
{
    for (const auto& pLight : lights)
    {
        if (pLight->m_bAmbient)
        {
            SayColor("Ambient", pLight->m_Ambient);
        }
        if (pLight->m_bSpecular)
        {
            SayColor("Specular", pLight->m_Specular);
        }
    }
}

void ClearFrame(const smVec3f& color)
{
    glClearColor(color.x, color.y, color.z, 0.0F);
    glClearDepth(1.0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void SetRasterState(std::uint32_t displayFlags)
{
    SetSmoothing(GL_POLYGON_SMOOTH, GL_POLYGON_SMOOTH_HINT,
                 (displayFlags & DisplayFlag::PolygonSmoothing) != 0);
    SetSmoothing(GL_LINE_SMOOTH, GL_LINE_SMOOTH_HINT, (displayFlags & DisplayFlag::LineSmoothing) != 0);
    if ((displayFlags & DisplayFlag::Blending) != 0)
    {
        BlendByAlpha();
    }
    else
    {
        glDisable(GL_BLEND);
    }
}
}

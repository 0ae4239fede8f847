#pragma once
#include "IACommand.h"
#include "MANSceneManager.h"

namespace tessarine
{
class Open3DCamera;

/// Adds one splat to the scene's cut faces: a quadrilateral that stands on a line between two pixels, taken to
/// the near plane, and reaches a hundredth to either side along the view.
///
/// Needs   A scene, and a camera whose view has an area (asserted).
class IADrawSplatCommand : public IACommand
{
public:
    void SetScene(MANSceneManager* scene) { m_pScene = scene; }
    void SetCamera(const Open3DCamera* camera) { m_pCamera = camera; }
    /// The ends of the line: pixels of the client area, y down.
    void SetStart(int x, int y)
    {
        m_nStartX = x;
        m_nStartY = y;
    }
    void SetEnd(int x, int y)
    {
        m_nEndX = x;
        m_nEndY = y;
    }

    CutFace MakeQuad() const;

    void Execute() override;

private:
    MANSceneManager* m_pScene = nullptr;
    const Open3DCamera* m_pCamera = nullptr;
    int m_nStartX = 0;
    int m_nStartY = 0;
    int m_nEndX = 0;
    int m_nEndY = 0;
};
}

#pragma once
#include "IACommand.h"
#include "smVec3d.h"
#include <string>
#include <vector>

namespace tessarine
{
class DSSolid;
class MANBrepElementManager;
class MANSceneManager;
class Open3DView;

/// Base of the commands that fit the current solid to a cloud of points. Each reads the cloud of its own.
class IAFittingCommand : public IACommand
{
public:
    void SetElementManager(MANBrepElementManager* pManager) { m_pElementManager = pManager; }
    void SetSceneManager(MANSceneManager* pManager) { m_pSceneManager = pManager; }
    void SetView(Open3DView* pView) { m_pView = pView; }

protected:
    IAFittingCommand() = default;

    /// Takes the current solid, and refuses one whose vertices cannot be walked around. All managers must be set
    /// (asserted).
    ///
    /// Fails   Failure without a solid; for a face that is no triangle; for an edge without two faces that run against
    ///         each other.
    void TakeClosedSolid();

    /// Refuses a solid with a face that is no triangle, or an edge without two faces that run against each other
    /// (Failure).
    static void DemandClosedTriangles(const DSSolid& solid);

    /// Reads the cloud and brings it into the cube from -1 to 1 in double precision.
    ///
    /// Says    The number of points.
    /// Fails   A file that cannot be opened is reported as an assertion, and named (FileError). Failure for what the
    ///         file should not hold, and for a cloud without extent.
    void LoadPoints(const std::string& fileName);

    /// Has the view show the cloud, and a foot point for each of its points; where there was none yet, the point
    /// itself.
    void ShowCloud();

    DSSolid* m_pSolid = nullptr;
    std::vector<smVec3d> m_Points; ///< the cloud
    MANBrepElementManager* m_pElementManager = nullptr;
    MANSceneManager* m_pSceneManager = nullptr;
    Open3DView* m_pView = nullptr;
};
}

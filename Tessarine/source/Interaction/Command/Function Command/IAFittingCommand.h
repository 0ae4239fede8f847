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
    /// The faces that a command can work on.
    enum class FaceForm
    {
        Triangles,
        Polygons ///< three corners or more
    };

    IAFittingCommand() = default;

    /// Takes the current solid. All managers must be set (asserted).
    ///
    /// Fails   No solid is reported as an assertion. Failure without a solid with faces.
    void TakeSolid();

    /// Takes the current solid, and refuses one whose vertices cannot be walked around.
    ///
    /// Fails   As TakeSolid and DemandClosed.
    void TakeClosedSolid(FaceForm form = FaceForm::Triangles);

    /// Refuses a solid with a face of another form, an edge without two faces that run against each other, or a vertex
    /// with more than one ring of faces (Failure).
    static void DemandClosed(const DSSolid& solid, FaceForm form = FaceForm::Triangles);

    /// Brings the solid into the cube from -1 to 1 in single precision.
    ///
    /// Fails   As NormalizeSolid; Failure for a solid without extent.
    void NormalizeCurrentSolid();

    /// Reads the cloud as it stands in the file.
    ///
    /// Says    The number of points.
    /// Fails   A file that cannot be opened is reported as an assertion, and named (FileError); so is a cloud without
    ///         points (Failure). Failure for what the file should not hold.
    void ReadPoints(const std::string& fileName);

    /// Brings the cloud into the cube from -1 to 1 in double precision. Failure for one without extent.
    void NormalizePoints();

    /// Both.
    void LoadPoints(const std::string& fileName);

    /// Has the view show the cloud, and a foot point for each of its points; where there was none yet, the point
    /// itself.
    void ShowCloud();

    DSSolid* m_pSolid = nullptr;
    std::vector<smVec3d> m_Points; ///< the cloud
    MANBrepElementManager* m_pElementManager = nullptr;
    MANSceneManager* m_pSceneManager = nullptr;
    Open3DView* m_pView = nullptr;

private:
    std::string m_strCloudName; ///< of the file that was read
};
}

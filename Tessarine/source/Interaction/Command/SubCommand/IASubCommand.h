#pragma once
#include "IACommand.h"

namespace tessarine
{
class DSSolid;
class MANBrepElementManager;
class MANSceneManager;

/// Base of the commands that subdivide the current solid: the solid of the first child of the scene's root.
class IASubCommand : public IACommand
{
public:
    void SetElementManager(MANBrepElementManager* pManager) { m_pElementManager = pManager; }
    void SetSceneManager(MANSceneManager* pManager) { m_pSceneManager = pManager; }

protected:
    IASubCommand() = default;

    /// Null where the root has no child, or its first child no solid. Both managers must be set (asserted).
    DSSolid* GetCurrentSolid() const;

    /// Puts the solid into a new leaf behind the root's other children.
    void AddLeafOf(DSSolid* pSolid);
    /// The same with a copy of the solid that is not visible.
    void KeepHiddenSnapshot(const DSSolid& solid);

    MANBrepElementManager* GetElementManager() const { return m_pElementManager; }

private:
    MANBrepElementManager* m_pElementManager = nullptr;
    MANSceneManager* m_pSceneManager = nullptr;
};
}

#pragma once
#include "IACommand.h"
#include <cstdint>

namespace tessarine
{
class MANBrepElementManager;
class MANMaterialManager;
struct DSMaterial;

/// Makes a material from the one of the first selected element, and opens the dialog that edits it.
///
/// Needs   The element manager (asserted).
/// Leaves  A new record at the end of the material list, also where the kind is neither of faces nor of solids.
///         Nothing where nothing is selected.
/// Fails   What GetFace and GetSolid say of an id that is of another kind or gone.
/// Kept    Neither the command nor the dialog gives the new material to the element: the dialog edits a copy that
///         nothing draws. Name and texture are not copied.
class IASetMaterialCommand : public IACommand
{
public:
    /// Sets the material manager as well: the one inside.
    void SetElementManager(MANBrepElementManager* pManager);
    /// ElementKind::Face or ElementKind::Solid: what the selected id is taken for.
    void SetKind(std::uint32_t nKind) { m_nKind = nKind; }

    void Execute() override;

private:
    const DSMaterial* FindOldMaterial(std::uint32_t id) const;

    std::uint32_t m_nKind = 0;
    MANBrepElementManager* m_pElementManager = nullptr;
    MANMaterialManager* m_pMaterialManager = nullptr;
};
}

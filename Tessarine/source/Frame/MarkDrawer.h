#pragma once
#include "smVec3f.h"
#include <cstdint>
#include <vector>

namespace tessarine
{
class DSEdge;
class DSElement;
class DSSolid;
class DSVertex;
class MANBrepElementManager;
class SolidDrawer;

/// Whether marks of elements of this kind (ElementKind) show with these switches of the view (DisplayFlag).
bool ShowsMarksOf(std::uint32_t kind, std::uint32_t displayFlags);

/// Draws the marks on selected and hovered elements, over what was drawn before.
///
/// Needs   A current context. Each operation leaves lighting on.
class MarkDrawer
{
public:
    MarkDrawer(std::uint32_t displayFlags, const MANBrepElementManager& elements, const SolidDrawer& solids)
        : m_nDisplayFlags(displayFlags), m_Elements(elements), m_Solids(solids)
    {
    }

    /// In list order, red.
    void DrawSelection(const std::vector<std::uint32_t>& ids) const;
    /// In list order: blue, yellow where the element is selected as well.
    void DrawHover(const std::vector<std::uint32_t>& ids) const;

private:
    void DrawMark(std::uint32_t id, const DSElement& element, const smVec3f& color) const;

    std::uint32_t m_nDisplayFlags;
    const MANBrepElementManager& m_Elements;
    const SolidDrawer& m_Solids;
};

/// Blue, yellow where the element is selected as well.
smVec3f GetHoverColor(const DSElement& element);
}

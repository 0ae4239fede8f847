#pragma once

namespace tessarine
{
class MANBrepElementManager;
class MANSceneManager;
class Open3DView;

/// The fixed state of the graphics library, set once for a context.
void InitStateLiterally();

/// One whole frame in its plainest form, into the context that is current: every vertex is a call of its own,
/// walked from the records in list order, and every colour, material and texture is set where it is needed.
/// The judge of Open3DView::Redraw. It swaps nothing, prints nothing and writes no pane.
///
/// An id of the selection or hover list that names no element, a leaf without a solid, and an edge without
/// half-edges are passed over.
void DrawFrameLiterally(const Open3DView& view, const MANSceneManager& scene,
                        const MANBrepElementManager& elements);
}

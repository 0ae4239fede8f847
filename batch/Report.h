#pragma once
#include <string>

namespace tessarine
{
struct BatchDocument;

/// What the document holds, as a page of JSON: the nodes under the root with the counts of their solids, the
/// camera, the switches of the view, the selection and what is under the mouse, the sizes of the overlays,
/// and the number of commands kept.
///
/// Connected pieces are those of the graph of vertices and edges; vertices without an edge are counted apart,
/// as "isolatedVertices". An edge counts as one where more than two faces meet when more than two half-edges
/// of the solid's faces name it. Of the two lists of ids the first kMostIdsInReport are told.
std::string MakeReport(const BatchDocument& document);

inline constexpr std::size_t kMostIdsInReport = 16;
}

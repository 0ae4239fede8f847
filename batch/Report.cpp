#include "Report.h"
#include "BatchDocument.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Open3DView.h"
#include "SolidCounts.h"
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

namespace tessarine
{
namespace
{
using Json = nlohmann::ordered_json;

Json NumberOf(double value)
{
    if (std::isfinite(value))
    {
        return value;
    }
    return std::isnan(value) ? "nan" : value > 0 ? "inf" : "-inf";
}

/// A double that prints as the float does.
Json NumberOf(float value)
{
    if (!std::isfinite(value))
    {
        return NumberOf(static_cast<double>(value));
    }
    char digits[32];
    const char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    double asPrinted = 0.0;
    std::from_chars(digits, end, asPrinted);
    return asPrinted;
}

Json PointOf(const smVec3d& point)
{
    return {NumberOf(point[0]), NumberOf(point[1]), NumberOf(point[2])};
}

Json IdsOf(const std::vector<std::uint32_t>& ids)
{
    const std::vector<std::uint32_t> told(ids.begin(), ids.begin() + std::min(ids.size(), kMostIdsInReport));
    return {{"count", ids.size()}, {"ids", told}};
}

void AddSolid(Json& node, const DSSolid& solid, const MANBrepElementManager& elements)
{
    const SolidCounts counts = CountSolid(solid, elements);
    node["solidVisible"] = solid.IsVisible();
    node["vertices"] = counts.vertices;
    node["faces"] = counts.faces;
    node["edges"] = counts.edges;
    node["boundaryEdges"] = counts.boundaryEdges;
    node["edgesOfMoreThanTwoFaces"] = counts.crowdedEdges;
    node["pieces"] = counts.pieces;
    node["isolatedVertices"] = counts.isolatedVertices;
    node["eulerNumber"] = counts.eulerNumber;
    node["min"] = counts.box ? PointOf(counts.box->low) : Json();
    node["max"] = counts.box ? PointOf(counts.box->high) : Json();
}

/// The nodes under a group, each before those below it.
void AddNodes(Json& nodes, const MANSceneGroup& group, const MANBrepElementManager& elements)
{
    for (const MANSceneNode* pNode : group.GetChildren())
    {
        Json node = {{"id", pNode->GetID()}, {"visible", pNode->IsVisible()}};
        if (MANSceneManager::GetKind(pNode->GetID()) == NodeKind::Leaf)
        {
            const DSSolid* pSolid = static_cast<const MANSceneLeaf*>(pNode)->GetSolid();
            node["solid"] = pSolid != nullptr ? Json(pSolid->GetID()) : Json();
            if (pSolid != nullptr)
            {
                AddSolid(node, *pSolid, elements);
            }
            nodes.push_back(node);
            continue;
        }
        const auto& subgroup = *static_cast<const MANSceneGroup*>(pNode);
        node["children"] = subgroup.GetChildren().size();
        nodes.push_back(node);
        AddNodes(nodes, subgroup, elements);
    }
}

Json CameraOf(const Open3DCamera& camera)
{
    return {{"position", PointOf(camera.GetPosition())},
            {"target", PointOf(camera.GetTarget())},
            {"up", PointOf(camera.GetUp())},
            {"near", NumberOf(camera.GetNear())},
            {"far", NumberOf(camera.GetFar())},
            {"fovy", NumberOf(camera.GetFovy())},
            {"aspect", NumberOf(camera.GetAspect())}};
}

Json OverlaysOf(const BatchDocument& document)
{
    const Open3DView& view = document.view;
    return {{"pointCloud", view.GetPointCloud().size()},
            {"pointNormals", view.GetPointNormals().size()},
            {"projectedPoints", view.GetProjectedPoints().size()},
            {"cutFaces", document.scene.GetCutFaceList().size()},
            {"newMesh", view.GetNewMesh() != nullptr ? Json(view.GetNewMesh()->GetID()) : Json()}};
}

/// One entry of an object a line, whatever it holds.
std::string LinesOf(const Json& object, const std::string& indent)
{
    std::string text = "{";
    const char* separator = "\n";
    for (const auto& [name, value] : object.items())
    {
        text += separator + indent + "  " + Json(name).dump() + ": " + value.dump();
        separator = ",\n";
    }
    return text + "\n" + indent + "}";
}

std::string NodesText(const Json& nodes)
{
    std::string text = "  \"nodes\": [";
    const char* separator = "\n    ";
    for (const Json& node : nodes)
    {
        text += separator + node.dump();
        separator = ",\n    ";
    }
    return text + (nodes.empty() ? "]" : "\n  ]");
}
}

std::string MakeReport(const BatchDocument& document)
{
    Json nodes = Json::array();
    AddNodes(nodes, *document.scene.GetRootGroup(), document.elements);

    Json rest;
    rest["camera"] = CameraOf(*document.view.GetCamera());
    rest["flags"] = document.view.GetDisplayFlags();
    rest["selection"] = {{"type", document.elements.GetSelectType()}};
    rest["selection"].update(IdsOf(document.elements.GetSelectList()));
    rest["hover"] = IdsOf(document.view.GetHoverList());
    rest["overlays"] = OverlaysOf(document);
    rest["history"] = document.historySize;
    rest["tool"] = document.toolID;
    return "{\n" + NodesText(nodes) + "," + LinesOf(rest, "").substr(1) + "\n";
}
}

#include "Report.h"
#include "BatchDocument.h"
#include "JsonText.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Open3DView.h"
#include "SolidCounts.h"
#include <algorithm>

namespace tessarine
{
namespace
{
constexpr int kEntryIndent = 2;
constexpr int kNodeIndent = 4;

void PutPoint(JsonText& json, std::string_view name, const smVec3d& point)
{
    json.Field(name, std::array<double, 3>{point[0], point[1], point[2]});
}

/// Their number, and the first of them.
void PutIds(JsonText& json, const std::vector<std::uint32_t>& ids)
{
    const auto told = static_cast<std::ptrdiff_t>(std::min(ids.size(), kMostIdsInReport));
    json.Field("count", ids.size());
    json.Field("ids", std::vector<std::uint32_t>(ids.begin(), ids.begin() + told));
}

void PutSolid(JsonText& json, const DSSolid& solid, const MANBrepElementManager& elements)
{
    const SolidCounts counts = CountSolid(solid, elements);
    json.Field("solidVisible", solid.IsVisible());
    json.Field("vertices", counts.vertices);
    json.Field("faces", counts.faces);
    json.Field("edges", counts.edges);
    json.Field("boundaryEdges", counts.boundaryEdges);
    json.Field("edgesOfMoreThanTwoFaces", counts.crowdedEdges);
    json.Field("pieces", counts.pieces);
    json.Field("isolatedVertices", counts.isolatedVertices);
    json.Field("eulerNumber", counts.eulerNumber);
    if (counts.box)
    {
        PutPoint(json, "min", counts.box->low);
        PutPoint(json, "max", counts.box->high);
        return;
    }
    json.Field("min", nullptr);
    json.Field("max", nullptr);
}

void PutLeaf(JsonText& json, const MANSceneLeaf& leaf, const MANBrepElementManager& elements)
{
    const DSSolid* pSolid = leaf.GetSolid();
    if (pSolid == nullptr)
    {
        json.Field("solid", nullptr);
        return;
    }
    json.Field("solid", pSolid->GetID());
    PutSolid(json, *pSolid, elements);
}

/// The nodes under a group, each before those below it.
void PutNodes(JsonText& json, const MANSceneGroup& group, const MANBrepElementManager& elements)
{
    for (const MANSceneNode* pNode : group.GetChildren())
    {
        const bool isLeaf = MANSceneManager::GetKind(pNode->GetID()) == NodeKind::Leaf;
        const auto* pGroup = isLeaf ? nullptr : static_cast<const MANSceneGroup*>(pNode);
        json.BeginLine(kNodeIndent);
        json.BeginObject();
        json.Field("id", pNode->GetID());
        json.Field("visible", pNode->IsVisible());
        if (pGroup != nullptr)
        {
            json.Field("children", pGroup->GetChildren().size());
            json.EndObject();
            PutNodes(json, *pGroup, elements);
            continue;
        }
        PutLeaf(json, *static_cast<const MANSceneLeaf*>(pNode), elements);
        json.EndObject();
    }
}

/// An object on a line of its own begins.
void BeginEntry(JsonText& json, std::string_view name)
{
    json.BeginLine(kEntryIndent);
    json.Key(name);
    json.BeginObject();
}

template <class T>
void PutEntry(JsonText& json, std::string_view name, const T& value)
{
    json.BeginLine(kEntryIndent);
    json.Field(name, value);
}

void PutCamera(JsonText& json, const Open3DCamera& camera)
{
    BeginEntry(json, "camera");
    PutPoint(json, "position", camera.GetPosition());
    PutPoint(json, "target", camera.GetTarget());
    PutPoint(json, "up", camera.GetUp());
    json.Field("near", camera.GetNear());
    json.Field("far", camera.GetFar());
    json.Field("fovy", camera.GetFovy());
    json.Field("aspect", camera.GetAspect());
    json.EndObject();
}

void PutOverlays(JsonText& json, const BatchDocument& document)
{
    const Open3DView& view = document.view;
    BeginEntry(json, "overlays");
    json.Field("pointCloud", view.GetPointCloud().size());
    json.Field("pointNormals", view.GetPointNormals().size());
    json.Field("projectedPoints", view.GetProjectedPoints().size());
    json.Field("cutFaces", document.scene.GetCutFaceList().size());
    const DSSolid* pNewMesh = view.GetNewMesh();
    json.Field("newMesh", pNewMesh != nullptr ? std::optional(pNewMesh->GetID()) : std::nullopt);
    json.EndObject();
}

void PutSelection(JsonText& json, const BatchDocument& document)
{
    BeginEntry(json, "selection");
    json.Field("type", document.elements.GetSelectType());
    PutIds(json, document.elements.GetSelectList());
    json.EndObject();
    BeginEntry(json, "hover");
    PutIds(json, document.view.GetHoverList());
    json.EndObject();
}

void PutReport(JsonText& json, const BatchDocument& document)
{
    json.BeginObject();
    json.BeginLine(kEntryIndent);
    json.Key("nodes");
    json.BeginArray();
    const MANSceneGroup& root = *document.scene.GetRootGroup();
    PutNodes(json, root, document.elements);
    if (!root.GetChildren().empty())
    {
        json.BeginLine(kEntryIndent);
    }
    json.EndArray();
    PutCamera(json, *document.view.GetCamera());
    PutEntry(json, "flags", document.view.GetDisplayFlags());
    PutSelection(json, document);
    PutOverlays(json, document);
    PutEntry(json, "history", document.historySize);
    PutEntry(json, "tool", document.toolID);
    json.BeginLine(0);
    json.EndObject();
    json.Finish();
}
}

std::string MakeReport(const BatchDocument& document)
{
    std::string text;
    JsonText json([&text](std::string_view piece) { text += piece; });
    PutReport(json, document);
    return text;
}
}

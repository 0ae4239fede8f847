#include "Resources.h"
#include "MANBrepElementManager.h"
#include "MANToolsManager.h"
#include "Open3DView.h"
#include "resource.h"
#include <algorithm>

namespace tessarine
{
namespace
{
using enum MenuHandler;

constexpr MenuEntry Switch(int id, const char* label, std::uint32_t flag)
{
    return {id, label, View, MenuCheck::DisplayFlag, flag};
}

constexpr MenuEntry SelectionType(int id, const char* label, std::uint32_t type)
{
    return {id, label, View, MenuCheck::SelectType, type};
}

// clang-format off
constexpr MenuEntry kEntries[] = {
    {ResourceID::OrbitTool, "环绕", View},
    {ResourceID::MoveCameraTool, "平移", View},
    {ResourceID::AroundTool, "环视", View},
    {ResourceID::ZoomTool, "缩放", View},
    {ResourceID::ImportObj, "导入 ( .Obj )", Document},
    {ResourceID::SubdivideLoop, "Loop 细分", Document},
    Switch(ResourceID::ShowWire, "显示线框", DisplayFlag::Wire),
    Switch(ResourceID::ShowShaded, "显示实体", DisplayFlag::FlatShading),
    {ResourceID::ShowAxes, "显示坐标轴", View},
    {ResourceID::ShowGrid, "显示网格", View},
    {ResourceID::ExportObj, "导出为 (*.obj)", Document},
    {ResourceID::LightingDialog, "设置光照属性", View},
    SelectionType(ResourceID::SelectVertices, "选择顶点", SelectType::Vertices),
    SelectionType(ResourceID::SelectEdges, "选择边", SelectType::Edges),
    SelectionType(ResourceID::SelectFaces, "选择面", SelectType::Faces),
    SelectionType(ResourceID::SelectSolids, "选择实体", SelectType::Solids),
    {ResourceID::SelectTool, "选择", View, MenuCheck::Tool, ToolID::Select},
    {ResourceID::ShowTexture, "显示纹理", View},
    {ResourceID::BuildInitialMesh, "构造初始网格", Document},
    {ResourceID::RefineHierarchical, "层次细分算法", Document},
    Switch(ResourceID::ShowOctree, "显示八叉树", DisplayFlag::Octree),
    Switch(ResourceID::ShowPointCloud, "显示点云", DisplayFlag::PointCloud),
    Switch(ResourceID::ShowPoints, "显示点模型", DisplayFlag::Points),
    {ResourceID::Simplify20, "20%", Document},
    {ResourceID::Simplify50, "50%", Document},
    {ResourceID::Simplify80, "80%", Document},
    {ResourceID::ProjectSamples, "投影采样", Document},
    {ResourceID::MoveVertexX, "沿 X 轴", View},
    {ResourceID::MoveVertexY, "沿 Y 轴", View},
    {ResourceID::MoveVertexZ, "沿 Z 轴", View},
    {ResourceID::MoveVertexNormal, "沿法向量", View},
    {ResourceID::MoveFaceX, "沿 X 轴", View},
    {ResourceID::MoveFaceY, "沿 Y 轴", View},
    {ResourceID::MoveFaceZ, "沿 Z 轴", View},
    {ResourceID::MoveFaceNormal, "沿法向量", View},
    {ResourceID::MoveSolidX, "沿 X 轴", View},
    {ResourceID::MoveSolidY, "沿 Y 轴", View},
    {ResourceID::MoveSolidZ, "沿 Z 轴", View},
    Switch(ResourceID::ShowPointNormals, "显示点云法向", DisplayFlag::PointNormals),
    Switch(ResourceID::VertexNormals, "点法向模式", DisplayFlag::SmoothShading),
    Switch(ResourceID::FaceNormals, "面法向模式", DisplayFlag::FlatShading),
    {ResourceID::OptimizeMesh1, "Optimize 1", Document},
    Switch(ResourceID::ShowProjectedPoints, "显示投影点", DisplayFlag::ProjectedPoints),
    Switch(ResourceID::ShowProjectionLines, "显示投影线", DisplayFlag::ProjectionLines),
    Switch(ResourceID::ShowNewMesh, "显示新网格", DisplayFlag::NewMesh),
    {ResourceID::TwoStepFirst, "两步对应第一步", Document},
    {ResourceID::ShowOriginalModel, "显示原模型", View, MenuCheck::OriginalModel},
    {ResourceID::RefineIncremental, "递增连接算法", Document},
    {ResourceID::RefineTwoStep, "两步对应算法", Document},
    {ResourceID::AspectRatio, "纵横比", None},
    {ResourceID::TwoStepSecond, "两步对应第二步", Document},
    {ResourceID::TwoStepThird, "两步对应第三步", Document},
    {ResourceID::SetMaterial, "设置材质", Document},
    {ResourceID::RefineEnergy, "能量函数算法", Document},
    {ResourceID::SubdivideAdaptive, "自适应细分", Document},
    {ResourceID::DrawSplatTool, "add splats in the model", View},
    Switch(ResourceID::ShowCutFaces, "显示分割面", DisplayFlag::CutFaces),
    {ResourceID::GenerateSplats, "add splat in the scene", Document},
    {ResourceID::OptimizeMesh2, "Optimize 2", Document},
    {ResourceID::OptimizeMesh3, "Optimize 3", Document},
    {ResourceID::SpacePartition, "空间剖分算法", None},
    {ResourceID::FileNew, "新建(&N)\tCtrl+N", Framework},
    {ResourceID::FileOpen, "打开(&O)...\tCtrl+O", Framework},
    {ResourceID::FileSave, "保存(&S)\tCtrl+S", Framework},
    {ResourceID::FileSaveAs, "另存为(&A)...", Framework},
    {ResourceID::EditCopy, "复制(&C)\tCtrl+C", None},
    {ResourceID::EditCut, "剪切(&T)\tCtrl+X", None},
    {ResourceID::EditPaste, "粘贴(&P)\tCtrl+V", None},
    {ResourceID::EditUndo, "撤消(&U)\tCtrl+Z", None},
    {ResourceID::AppAbout, "关于 Tessarine(&A)...", Framework},
};
// clang-format on

static_assert(std::is_sorted(std::begin(kEntries), std::end(kEntries),
                             [](const MenuEntry& a, const MenuEntry& b) { return a.id < b.id; }));
}

std::span<const MenuEntry> GetMenuEntries()
{
    return kEntries;
}

const MenuEntry* FindMenuEntry(int id)
{
    const auto found = std::find_if(std::begin(kEntries), std::end(kEntries),
                                    [id](const MenuEntry& entry) { return entry.id == id; });
    return found == std::end(kEntries) ? nullptr : found;
}
}

#include "MenuTables.h"
#include "resource.h"
#include <algorithm>

namespace tessarine
{
namespace
{
using namespace ResourceID;

constexpr MenuLine kSeparator{};

constexpr MenuLine Entry(int id)
{
    return {id, nullptr, {}};
}

constexpr MenuLine FileMenu[] = {
    Entry(FileNew),
    Entry(FileOpen),
    Entry(FileSave),
    Entry(FileSaveAs),
    kSeparator,
    Entry(ImportObj),
    Entry(ExportObj),
    kSeparator,
    {RecentFile1, "最近的文件", {}},
    kSeparator,
    {AppExit, "退出(&X)", {}},
};

constexpr MenuLine EditMenu[] = {
    Entry(EditUndo), kSeparator, Entry(EditCut), Entry(EditCopy), Entry(EditPaste),
};

constexpr MenuLine ViewMenu[] = {
    Entry(ShowWire),
    Entry(ShowPoints),
    Entry(ShowTexture),
    kSeparator,
    Entry(FaceNormals),
    Entry(VertexNormals),
    kSeparator,
    {ViewToolbar, "工具栏(&T)", {}},
    {ViewSelectToolbar, "选择工具栏(&L)", {}},
    {ViewStatusBar, "状态栏(&S)", {}},
    {ViewConsole, "调试窗口(&D)", {}},
};

constexpr MenuLine SelectMenu[] = {
    Entry(SelectVertices), Entry(SelectEdges), Entry(SelectFaces),
    Entry(SelectSolids),   kSeparator,         Entry(SelectTool),
};

constexpr MenuLine SubdivisionMenu[] = {Entry(SubdivideLoop), Entry(SubdivideAdaptive)};

constexpr MenuLine SimplifyMenu[] = {Entry(Simplify20), Entry(Simplify50), Entry(Simplify80)};

constexpr MenuLine OptimizeMenu[] = {
    Entry(OptimizeMesh1), Entry(OptimizeMesh2), Entry(OptimizeMesh3), kSeparator, Entry(AspectRatio),
};

constexpr MenuLine ReconstructionMenu[] = {
    Entry(ProjectSamples),    Entry(BuildInitialMesh), kSeparator,          Entry(RefineHierarchical),
    Entry(RefineIncremental), Entry(RefineTwoStep),    Entry(RefineEnergy), Entry(SpacePartition),
};

constexpr MenuLine OverlayMenu[] = {
    Entry(ShowOctree),          Entry(ShowPointCloud), Entry(ShowPointNormals), Entry(ShowProjectedPoints),
    Entry(ShowProjectionLines), Entry(ShowNewMesh),    Entry(ShowCutFaces),     kSeparator,
    Entry(ShowOriginalModel),
};

constexpr MenuLine HelpMenu[] = {Entry(AppAbout)};

constexpr MenuLine kMenuBar[] = {
    {0, "文件(&F)", FileMenu},     {0, "编辑(&E)", EditMenu},           {0, "显示(&V)", ViewMenu},
    {0, "选择(&S)", SelectMenu},   {0, "细分(&D)", SubdivisionMenu},    {0, "简化(&M)", SimplifyMenu},
    {0, "优化(&O)", OptimizeMenu}, {0, "重构(&R)", ReconstructionMenu}, {0, "重构辅助显示(&A)", OverlayMenu},
    {0, "帮助(&H)", HelpMenu},
};

constexpr MenuLine VertexPopup[] = {Entry(MoveVertexX), Entry(MoveVertexY), Entry(MoveVertexZ),
                                    Entry(MoveVertexNormal)};
constexpr MenuLine FacePopup[] = {Entry(MoveFaceX), Entry(MoveFaceY), Entry(MoveFaceZ),
                                  Entry(MoveFaceNormal)};
constexpr MenuLine SolidPopup[] = {Entry(MoveSolidX), Entry(MoveSolidY), Entry(MoveSolidZ), kSeparator,
                                   Entry(SetMaterial)};

/// Nothing opens the second: edges have no operations.
constexpr MenuLine kSelectionMenus[] = {
    {0, "顶点操作", VertexPopup}, {0, "边操作", {}}, {0, "面操作", FacePopup}, {0, "实体操作", SolidPopup}};

constexpr int kMainToolbar[] = {
    FileNew,
    FileOpen,
    FileSave,
    0, // the document
    OrbitTool,
    MoveCameraTool,
    AroundTool,
    ZoomTool,
    0, // the camera
    SubdivideLoop,
    0,
    ShowAxes,
    ShowGrid,
    LightingDialog,
    0, // the view
    TwoStepFirst,
    TwoStepSecond,
    TwoStepThird,
    0,
    GenerateSplats,
    AppAbout,
};

constexpr int kSelectToolbar[] = {SelectVertices, SelectEdges, SelectFaces, SelectSolids, SelectTool};

constexpr Accelerator kAccelerators[] = {
    {FileNew, "Ctrl+N"},         {FileOpen, "Ctrl+O"},  {FileSave, "Ctrl+S"},     {EditUndo, "Ctrl+Z"},
    {EditUndo, "Alt+Backspace"}, {EditCut, "Ctrl+X"},   {EditCut, "Shift+Del"},   {EditCopy, "Ctrl+C"},
    {EditCopy, "Ctrl+Ins"},      {EditPaste, "Ctrl+V"}, {EditPaste, "Shift+Ins"},
};

constexpr CommandText kCommandTexts[] = {
    {FileNew, "建立新文档", "新建"},
    {FileOpen, "打开一个现有文档", "打开"},
    {FileSave, "保存活动文档", "保存"},
    {FileSaveAs, "将活动文档以一个新文件名保存", nullptr},
    {RecentFile1, "打开该文档", nullptr},
    {AppAbout, "显示程序信息，版本号和版权", "关于"},
    {AppExit, "退出应用程序", nullptr},
    {EditUndo, "撤消最后一步操作", nullptr},
    {EditCut, "剪切被选对象并将其置于剪贴板上", nullptr},
    {EditCopy, "复制被选对象并将其置于剪贴板上", nullptr},
    {EditPaste, "插入剪贴板内容", nullptr},
    {ImportObj, "导入 Wavefront OBJ 模型，取代当前模型", nullptr},
    {ExportObj, "将可见的实体导出为 Wavefront OBJ 模型", nullptr},
    {OrbitTool, "拖动鼠标左键，绕目标点旋转视点", "环绕"},
    {MoveCameraTool, "拖动鼠标左键，平移视点", "平移"},
    {AroundTool, "拖动鼠标左键，在视点处转动视线", "环视"},
    {ZoomTool, "上下拖动鼠标左键，缩放视图", "缩放"},
    {SubdivideLoop, "对当前实体做一次 Loop 细分", "Loop 细分"},
    {SubdivideAdaptive, "按面积阈值细分当前实体", nullptr},
    {Simplify20, "减去当前实体约 80% 的面", nullptr},
    {Simplify50, "减去当前实体约 50% 的面", nullptr},
    {Simplify80, "减去当前实体约 20% 的面", nullptr},
    {OptimizeMesh1, "以第一种方式优化当前实体的网格", nullptr},
    {OptimizeMesh2, "以第二种方式优化当前实体的网格", nullptr},
    {OptimizeMesh3, "以第三种方式优化当前实体的网格", nullptr},
    {AspectRatio, "三角形的纵横比", nullptr},
    {ProjectSamples, "由各个相机方向采样当前模型", nullptr},
    {BuildInitialMesh, "由轮廓图像构造初始网格", nullptr},
    {RefineHierarchical, "用层次细分算法逼近点云", nullptr},
    {RefineIncremental, "用递增连接算法逼近点云", nullptr},
    {RefineTwoStep, "用两步对应算法逼近点云", nullptr},
    {RefineEnergy, "用能量函数算法逼近点云", nullptr},
    {SpacePartition, "用空间剖分算法逼近点云", nullptr},
    {TwoStepFirst, "执行两步对应算法的第一步", "两步对应：第一步"},
    {TwoStepSecond, "执行两步对应算法的第二步", "两步对应：第二步"},
    {TwoStepThird, "执行两步对应算法的第三步", "两步对应：第三步"},
    {GenerateSplats, "add splat in the scene", "添加 Splat"},
    {ShowWire, "显示或隐藏模型的线框", nullptr},
    {ShowPoints, "显示或隐藏模型的顶点", nullptr},
    {ShowTexture, "以纹理方式显示模型", nullptr},
    {FaceNormals, "以面法向（平面着色）显示模型", nullptr},
    {VertexNormals, "以点法向（光滑着色）显示模型", nullptr},
    {ShowAxes, "显示或隐藏坐标轴", "坐标轴"},
    {ShowGrid, "显示或隐藏地面网格", "地面网格"},
    {LightingDialog, "设置光照属性", "光照"},
    {SelectVertices, "选择顶点", "选择顶点"},
    {SelectEdges, "选择边", "选择边"},
    {SelectFaces, "选择面", "选择面"},
    {SelectSolids, "选择实体", "选择实体"},
    {SelectTool, "选择对象", "选择"},
    {MoveVertexX, "沿 X 轴移动所选顶点：左键确认，右键取消", nullptr},
    {MoveVertexY, "沿 Y 轴移动所选顶点：左键确认，右键取消", nullptr},
    {MoveVertexZ, "沿 Z 轴移动所选顶点：左键确认，右键取消", nullptr},
    {MoveVertexNormal, "沿法向量移动所选顶点：左键确认，右键取消", nullptr},
    {MoveFaceX, "沿 X 轴移动所选面：左键确认，右键取消", nullptr},
    {MoveFaceY, "沿 Y 轴移动所选面：左键确认，右键取消", nullptr},
    {MoveFaceZ, "沿 Z 轴移动所选面：左键确认，右键取消", nullptr},
    {MoveFaceNormal, "沿法向量移动所选面：左键确认，右键取消", nullptr},
    {MoveSolidX, "沿 X 轴移动所选实体：左键确认，右键取消", nullptr},
    {MoveSolidY, "沿 Y 轴移动所选实体：左键确认，右键取消", nullptr},
    {MoveSolidZ, "沿 Z 轴移动所选实体：左键确认，右键取消", nullptr},
    {SetMaterial, "设置所选实体的材质", nullptr},
    {ShowOctree, "显示或隐藏八叉树", nullptr},
    {ShowPointCloud, "显示或隐藏点云", nullptr},
    {ShowPointNormals, "显示或隐藏点云的法向", nullptr},
    {ShowProjectedPoints, "显示或隐藏点云的投影点", nullptr},
    {ShowProjectionLines, "显示或隐藏点云到投影点的连线", nullptr},
    {ShowNewMesh, "显示或隐藏新网格", nullptr},
    {ShowCutFaces, "显示或隐藏分割面", nullptr},
    {ShowOriginalModel, "显示或隐藏原模型", nullptr},
    {ViewToolbar, "显示或隐藏工具栏", nullptr},
    {ViewSelectToolbar, "显示或隐藏选择工具栏", nullptr},
    {ViewStatusBar, "显示或隐藏状态栏", nullptr},
    {ViewConsole, "显示或隐藏调试窗口 DebugOutput", nullptr},
};
}

std::span<const MenuLine> GetMenuBar()
{
    return kMenuBar;
}

std::span<const MenuLine> GetSelectionMenus()
{
    return kSelectionMenus;
}

std::span<const int> GetMainToolbar()
{
    return kMainToolbar;
}

std::span<const int> GetSelectToolbar()
{
    return kSelectToolbar;
}

std::span<const Accelerator> GetAccelerators()
{
    return kAccelerators;
}

const CommandText* FindCommandText(int id)
{
    const auto found = std::find_if(std::begin(kCommandTexts), std::end(kCommandTexts),
                                    [id](const CommandText& text) { return text.id == id; });
    return found == std::end(kCommandTexts) ? nullptr : found;
}

std::string_view GetDocumentField(int index)
{
    std::string_view rest = kDocumentString;
    for (int i = 0; i < index; ++i)
    {
        const std::size_t end = rest.find('\n');
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    }
    return rest.substr(0, rest.find('\n'));
}

std::string GetWindowTitle(std::string_view documentName)
{
    constexpr std::string_view untitled = "无标题";
    const std::string_view ownName = GetDocumentField(1);
    std::string_view name = documentName;
    if (name.empty())
    {
        name = ownName.empty() ? untitled : ownName;
    }
    return std::string(name) + " - " + std::string(GetDocumentField(0));
}
}

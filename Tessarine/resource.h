#pragma once

/// The numbers of menus, toolbars, dialogs and status panes, as the resources have them.
namespace tessarine::ResourceID
{
// The framework's own entries.
inline constexpr int FileNew = 57600;
inline constexpr int FileOpen = 57601;
inline constexpr int FileSave = 57603;
inline constexpr int FileSaveAs = 57604;
inline constexpr int EditCopy = 57634;
inline constexpr int EditCut = 57635;
inline constexpr int EditPaste = 57637;
inline constexpr int EditUndo = 57643;
inline constexpr int RecentFile1 = 57616; // and the three that follow
inline constexpr int AppAbout = 57664;
inline constexpr int AppExit = 57665;
inline constexpr int ViewToolbar = 59392;
inline constexpr int ViewStatusBar = 59393;

// Models in and out.
inline constexpr int ImportObj = 32775;
inline constexpr int ExportObj = 32783;

// Mesh operators and reconstruction.
inline constexpr int SubdivideLoop = 32778;
inline constexpr int SubdivideAdaptive = 32835;
inline constexpr int ProjectSamples = 32805;
inline constexpr int BuildInitialMesh = 32794;
inline constexpr int RefineHierarchical = 32796;
inline constexpr int RefineIncremental = 32828;
inline constexpr int RefineTwoStep = 32829;
inline constexpr int RefineEnergy = 32834;
inline constexpr int OptimizeMesh1 = 32821;
inline constexpr int OptimizeMesh2 = 32840;
inline constexpr int OptimizeMesh3 = 32841;
inline constexpr int Simplify20 = 32802;
inline constexpr int Simplify50 = 32803;
inline constexpr int Simplify80 = 32804;
inline constexpr int SetMaterial = 32833;
inline constexpr int GenerateSplats = 32839;
inline constexpr int TwoStepFirst = 32826;
inline constexpr int TwoStepSecond = 32831;
inline constexpr int TwoStepThird = 32832;
inline constexpr int AspectRatio = 32830;
inline constexpr int SpacePartition = 32842;

// Camera tools.
inline constexpr int OrbitTool = 32771;
inline constexpr int MoveCameraTool = 32772;
inline constexpr int AroundTool = 32773;
inline constexpr int ZoomTool = 32774;

// Switches of the view.
inline constexpr int ShowWire = 32779;
inline constexpr int ShowShaded = 32780;
inline constexpr int ShowAxes = 32781;
inline constexpr int ShowGrid = 32782;
inline constexpr int LightingDialog = 32784;
inline constexpr int ShowTexture = 32792;
inline constexpr int ShowPoints = 32799;
inline constexpr int VertexNormals = 32819;
inline constexpr int FaceNormals = 32820;
inline constexpr int ShowOctree = 32797;
inline constexpr int ShowPointCloud = 32798;
inline constexpr int ShowPointNormals = 32818;
inline constexpr int ShowProjectedPoints = 32822;
inline constexpr int ShowProjectionLines = 32823;
inline constexpr int ShowNewMesh = 32824;
inline constexpr int ShowOriginalModel = 32827;
inline constexpr int ShowCutFaces = 32838;

// Selection.
inline constexpr int SelectVertices = 32786;
inline constexpr int SelectEdges = 32787;
inline constexpr int SelectFaces = 32788;
inline constexpr int SelectSolids = 32789;
inline constexpr int SelectTool = 32790;
inline constexpr int DrawSplatTool = 32836;

// The pop-up menu of the selection.
inline constexpr int MoveVertexX = 32806;
inline constexpr int MoveVertexY = 32807;
inline constexpr int MoveVertexZ = 32808;
inline constexpr int MoveVertexNormal = 32809;
inline constexpr int MoveFaceX = 32810;
inline constexpr int MoveFaceY = 32811;
inline constexpr int MoveFaceZ = 32812;
inline constexpr int MoveFaceNormal = 32813;
inline constexpr int MoveSolidX = 32814;
inline constexpr int MoveSolidY = 32815;
inline constexpr int MoveSolidZ = 32816;

// What the frame shows and hides, besides the framework's own.
inline constexpr int ViewSelectToolbar = 32900;
inline constexpr int ViewConsole = 32901;

// Toolbars, status bar and its panes.
inline constexpr int MainFrame = 128;
inline constexpr int SelectToolbar = 136;
inline constexpr int ToolbarWindow = 0xE800;
inline constexpr int StatusBarWindow = 0xE801;
inline constexpr int CapsLockPane = 59137;
inline constexpr int NumLockPane = 59138;
inline constexpr int ScrollLockPane = 59139;
inline constexpr int CameraPane = 59142;
inline constexpr int FacePane = 59143;
inline constexpr int VertexPane = 59144;

// Dialogs and the pop-up menu.
inline constexpr int AboutDialog = 100;
inline constexpr int SetLightingDialog = 135;
inline constexpr int SelectionMenu = 139;
inline constexpr int SetMaterialDialog = 141;
inline constexpr int SubdivisionDialog = 143;

// Buttons that every dialog may have.
inline constexpr int OK = 1;
inline constexpr int Cancel = 2;

// The message that redraws the view.
inline constexpr int RedrawMessage = 0x401;
}

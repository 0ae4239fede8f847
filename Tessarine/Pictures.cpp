#include "Pictures.h"
#include "resource.h"
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <algorithm>

namespace tessarine
{
namespace
{
struct Picture
{
    int id;
    const char* name;
};

constexpr Picture kPictures[] = {
    {ResourceID::MainFrame, "tessarine"},
    {ResourceID::FileNew, "new"},
    {ResourceID::FileOpen, "open"},
    {ResourceID::FileSave, "save"},
    {ResourceID::OrbitTool, "orbit"},
    {ResourceID::MoveCameraTool, "pan"},
    {ResourceID::AroundTool, "around"},
    {ResourceID::ZoomTool, "zoom"},
    {ResourceID::SubdivideLoop, "loop"},
    {ResourceID::ShowAxes, "axes"},
    {ResourceID::ShowGrid, "grid"},
    {ResourceID::LightingDialog, "light"},
    {ResourceID::TwoStepFirst, "two-step-first"},
    {ResourceID::TwoStepSecond, "two-step-second"},
    {ResourceID::TwoStepThird, "two-step-third"},
    {ResourceID::GenerateSplats, "splat"},
    {ResourceID::AppAbout, "about"},
    {ResourceID::SelectVertices, "select-vertices"},
    {ResourceID::SelectEdges, "select-edges"},
    {ResourceID::SelectFaces, "select-faces"},
    {ResourceID::SelectSolids, "select-solids"},
    {ResourceID::SelectTool, "select"},
};

/// Sharp at the size of a button, on dense screens, and in the about box.
constexpr int kSizes[] = {24, 48, 96};

QPixmap Draw(QSvgRenderer& renderer, int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    return pixmap;
}
}

QIcon LoadPicture(int id)
{
    const auto found = std::find_if(std::begin(kPictures), std::end(kPictures),
                                    [id](const Picture& picture) { return picture.id == id; });
    if (found == std::end(kPictures))
    {
        return {};
    }
    QSvgRenderer renderer(QString(":/toolbar/%1.svg").arg(found->name));
    QIcon icon;
    for (const int size : kSizes)
    {
        icon.addPixmap(Draw(renderer, size));
    }
    return icon;
}
}

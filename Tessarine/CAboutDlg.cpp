#include "CAboutDlg.h"
#include "Pictures.h"
#include "resource.h"
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>

namespace tessarine
{
namespace
{
constexpr int kIconSize = 48;
}

CAboutDlg::CAboutDlg(QWidget* parent) : QDialog(parent)
{
    setWindowTitle("关于 Tessarine");
    auto* icon = new QLabel;
    icon->setPixmap(LoadPicture(ResourceID::MainFrame).pixmap(kIconSize));
    auto* text = new QLabel("Tessarine " TESSARINE_VERSION " 版\n\n多边形网格与曲面重构工作台");
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto* layout = new QGridLayout(this);
    layout->addWidget(icon, 0, 0, Qt::AlignTop);
    layout->addWidget(text, 0, 1);
    layout->addWidget(buttons, 1, 0, 1, 2);
    layout->setHorizontalSpacing(kIconSize / 2);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}
}

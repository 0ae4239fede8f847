#include "SubdivisionDLG.h"
#include "Platform.h"
#include "resource.h"
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <cmath>
#include <limits>
#include <optional>

namespace tessarine
{
namespace
{
constexpr int kThresholdEdit = 1034;

/// A number in decimal form, with or without an exponent, that a float can hold.
std::optional<float> ReadThreshold(const QString& text)
{
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber || !(std::abs(value) <= std::numeric_limits<float>::max()))
    {
        return std::nullopt;
    }
    return static_cast<float>(value);
}
}

CSubdivisionDLG::CSubdivisionDLG(QWidget* parent) : QDialog(parent)
{
    setObjectName(QString::number(ResourceID::SubdivisionDialog));
    setWindowTitle("设置细分参数");
    auto* edit = new QLineEdit(QString::number(m_fThreshold));
    edit->setObjectName(QString::number(kThresholdEdit));
    edit->selectAll();
    auto* group = new QGroupBox("自适应细分");
    auto* groupLayout = new QHBoxLayout(group);
    groupLayout->addWidget(new QLabel("最大面积阈值："));
    groupLayout->addWidget(edit);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &CSubdivisionDLG::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(group);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void CSubdivisionDLG::accept()
{
    auto* edit = findChild<QLineEdit*>(QString::number(kThresholdEdit));
    const auto threshold = ReadThreshold(edit->text());
    if (!threshold)
    {
        ShowMessage("请输入一个数字，例如 0.01 或 1e-3。");
        edit->setFocus();
        edit->selectAll();
        return;
    }
    m_fThreshold = *threshold;
    QDialog::accept();
}
}

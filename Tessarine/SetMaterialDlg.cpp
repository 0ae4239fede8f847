#include "SetMaterialDlg.h"
#include "Console.h"
#include "MANMaterialManager.h"
#include "resource.h"
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>

namespace tessarine
{
namespace
{
constexpr int kShininessSlider = 1036;
constexpr int kShininessEdit = 1021;
constexpr int kTransparencySlider = 1037;
constexpr int kTransparencyEdit = 1022;
}

struct CSetMaterialDlg::ColourGroup
{
    const char* title;
    int firstSlider;
    int firstEdit;
    smVec3f DSMaterial::*colour;
};

const CSetMaterialDlg::ColourGroup CSetMaterialDlg::kGroups[4] = {
    {"Ambient", 1000, 1003, &DSMaterial::m_Ambient},
    {"Diffuse", 1006, 1009, &DSMaterial::m_Diffuse},
    {"Specular", 1012, 1015, &DSMaterial::m_Specular},
    {"Emissive", 1033, 1018, &DSMaterial::m_Emission},
};

CSetMaterialDlg::CSetMaterialDlg(QWidget* parent, std::weak_ptr<DSMaterial> material)
    : CSettingDlg(parent, ResourceID::SetMaterialDialog, "设置材质"), m_pMaterial(std::move(material))
{
    MakeControls();
    if (const auto pMaterial = m_pMaterial.lock())
    {
        ShowMaterial(*pMaterial);
    }
}

void CSetMaterialDlg::MakeControls()
{
    auto* layout = new QGridLayout(this);
    int place = 0;
    const auto add = [&](QWidget* widget)
    {
        layout->addWidget(widget, place / kColumns, place % kColumns);
        ++place;
    };
    for (const ColourGroup& group : kGroups)
    {
        add(MakeColourGroup(group.title, group.firstSlider, group.firstEdit));
    }
    add(MakeSliderGroup("Shininess", {{"", kShininessSlider, kShininessEdit, 128}}));
    add(MakeSliderGroup("Transparency", {{"", kTransparencySlider, kTransparencyEdit, 100}}));
    layout->addWidget(MakeButtons(), place / kColumns, 0, 1, kColumns);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

QWidget* CSetMaterialDlg::MakeButtons()
{
    auto* buttons = new QWidget;
    auto* layout = new QHBoxLayout(buttons);
    layout->setContentsMargins({});
    layout->addStretch();
    for (const auto& [id, text] : {std::pair(ResourceID::OK, "OK"), std::pair(ResourceID::Cancel, "Cancel")})
    {
        auto* button = new QPushButton(text);
        button->setObjectName(QString::number(id));
        connect(button, &QPushButton::clicked, this, &QWidget::close);
        layout->addWidget(button);
    }
    return buttons;
}

void CSetMaterialDlg::ShowMaterial(const DSMaterial& material)
{
    for (const ColourGroup& group : kGroups)
    {
        for (int i = 0; i < 3; ++i)
        {
            ShowNumber(group.firstSlider + i, group.firstEdit + i,
                       ToNumber((material.*group.colour)[i], 255.0F));
        }
    }
    // Kept: the shininess is shown as it is, although a move writes the 128th part of the position.
    ShowNumber(kShininessSlider, kShininessEdit, ToNumber(material.m_fShininess, 1.0F));
    ShowNumber(kTransparencySlider, kTransparencyEdit, ToNumber(material.m_fTransparency, 100.0F));
}

void CSetMaterialDlg::OnHScroll(int slider, int position)
{
    const auto pMaterial = m_pMaterial.lock();
    if (pMaterial == nullptr)
    {
        return;
    }
    for (const ColourGroup& group : kGroups)
    {
        const int component = slider - group.firstSlider;
        if (component >= 0 && component < 3)
        {
            ((*pMaterial).*group.colour)[component] = static_cast<float>(position / 255.0);
        }
    }
    if (slider == kShininessSlider)
    {
        pMaterial->m_fShininess = static_cast<float>(position / 128.0);
    }
    if (slider == kTransparencySlider)
    {
        pMaterial->m_fTransparency = static_cast<float>(position / 100.0);
        DebugConsole() << pMaterial->m_fTransparency << '\n';
        DebugConsole().Flush();
    }
}
}

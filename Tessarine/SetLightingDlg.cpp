#include "SetLightingDlg.h"
#include "Answer.h"
#include "Open3DLight.h"
#include "resource.h"
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <algorithm>

namespace tessarine
{
namespace
{
constexpr int kLightCombo = 1030;
constexpr int kAddButton = 1028;
constexpr int kDeleteButton = 1029;
constexpr int kFirstPositionEdit = 1024;
constexpr int kPositionLetters = 9;
constexpr const char* kAxes[] = {"X", "Y", "Z"};
}

struct CSetLightingDlg::ColourGroup
{
    const char* title;
    int firstSlider;
    int firstEdit;
    int check;
    smVec3f Open3DLight::*colour;
    bool Open3DLight::*flag;
};

const CSetLightingDlg::ColourGroup CSetLightingDlg::kGroups[3] = {
    {"Ambient", 1000, 1003, 1020, &Open3DLight::m_Ambient, &Open3DLight::m_bAmbient},
    {"Diffuse", 1006, 1009, 1019, &Open3DLight::m_Diffuse, &Open3DLight::m_bDiffuse},
    {"Specular", 1012, 1015, 1021, &Open3DLight::m_Specular, &Open3DLight::m_bSpecular},
};

CSetLightingDlg::CSetLightingDlg(QWidget* parent, const std::vector<std::shared_ptr<Open3DLight>>& lights)
    : CSettingDlg(parent, ResourceID::SetLightingDialog, "设置光照属性"),
      m_Lights(lights.begin(), lights.end())
{
    MakeControls();
    FillLights();
    Refresh();
}

bool CSetLightingDlg::IsAlive() const
{
    return std::any_of(m_Lights.begin(), m_Lights.end(), [](const auto& light) { return !light.expired(); });
}

void CSetLightingDlg::MakeControls()
{
    auto* combo = new QComboBox;
    combo->setObjectName(QString::number(kLightCombo));
    auto* choice = new QHBoxLayout;
    choice->addWidget(new QLabel("Select Light"));
    choice->addWidget(combo, 1);
    auto* checks = new QHBoxLayout;
    auto* layout = new QGridLayout(this);
    layout->addLayout(choice, 0, 0);
    layout->addWidget(MakeButtons(), 0, 1);
    layout->addLayout(checks, 1, 0, 1, kColumns);
    int place = 2 * kColumns;
    for (const ColourGroup& group : kGroups)
    {
        checks->addWidget(MakeCheck(group));
        layout->addWidget(MakeColourGroup(group.title, group.firstSlider, group.firstEdit), place / kColumns,
                          place % kColumns);
        ++place;
    }
    layout->addWidget(MakePositionGroup(), place / kColumns, place % kColumns, Qt::AlignTop);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

QWidget* CSetLightingDlg::MakeCheck(const ColourGroup& group)
{
    auto* check = new QCheckBox(group.title);
    check->setObjectName(QString::number(group.check));
    connect(check, &QCheckBox::clicked, this, [this, &group] { Answer([&] { Flip(group.flag); }); });
    return check;
}

QWidget* CSetLightingDlg::MakePositionGroup()
{
    auto* group = new QGroupBox("Position");
    auto* layout = new QHBoxLayout(group);
    int id = kFirstPositionEdit;
    for (const char* axis : kAxes)
    {
        auto* edit = new QLineEdit;
        edit->setObjectName(QString::number(id++));
        edit->setReadOnly(true);
        edit->setFixedWidth(kPositionLetters * edit->fontMetrics().horizontalAdvance('0'));
        layout->addWidget(new QLabel(axis));
        layout->addWidget(edit);
    }
    return group;
}

/// A scene keeps the lights that it has: the buttons have no effect.
QWidget* CSetLightingDlg::MakeButtons()
{
    auto* buttons = new QWidget;
    auto* layout = new QHBoxLayout(buttons);
    layout->setContentsMargins({});
    for (const auto& [id, text] : {std::pair(kAddButton, "Add"), std::pair(kDeleteButton, "Delete")})
    {
        auto* button = new QPushButton(text);
        button->setObjectName(QString::number(id));
        button->setAutoDefault(false);
        button->setEnabled(false);
        layout->addWidget(button);
    }
    return buttons;
}

void CSetLightingDlg::FillLights()
{
    auto& combo = Control<QComboBox>(kLightCombo);
    for (const auto& entry : m_Lights)
    {
        if (const auto light = entry.lock())
        {
            combo.addItem(QString::fromStdString(light->m_Name));
        }
    }
    combo.setCurrentIndex(0);
    m_pLight = m_Lights.empty() ? std::weak_ptr<Open3DLight>() : m_Lights.front();
    connect(&combo, &QComboBox::currentTextChanged, this,
            [this](const QString& name) { Answer([&] { OnSelectLight(name); }); });
}

/// The first light of the name, or the last one where none has it.
void CSetLightingDlg::OnSelectLight(const QString& name)
{
    for (const auto& entry : m_Lights)
    {
        const auto light = entry.lock();
        if (light == nullptr)
        {
            continue;
        }
        m_pLight = light;
        if (QString::fromStdString(light->m_Name) == name)
        {
            break;
        }
    }
    Refresh();
}

void CSetLightingDlg::OnHScroll(int slider, int position)
{
    const auto light = m_pLight.lock();
    if (light == nullptr)
    {
        return Refresh();
    }
    for (const ColourGroup& group : kGroups)
    {
        const int component = slider - group.firstSlider;
        if (component >= 0 && component < 3)
        {
            ((*light).*group.colour)[component] = static_cast<float>(position / 255.0);
        }
    }
}

void CSetLightingDlg::Flip(bool Open3DLight::*flag)
{
    if (const auto light = m_pLight.lock())
    {
        (*light).*flag = !((*light).*flag);
    }
    Refresh();
    Invalidate();
}

/// Shows the light; without one, everything is disabled.
void CSetLightingDlg::Refresh()
{
    const auto light = m_pLight.lock();
    for (const ColourGroup& group : kGroups)
    {
        auto& check = Control<QCheckBox>(group.check);
        const bool isOn = light != nullptr && (*light).*group.flag;
        check.setEnabled(light != nullptr);
        check.setChecked(isOn);
        for (int i = 0; i < 3; ++i)
        {
            if (light != nullptr)
            {
                ShowNumber(group.firstSlider + i, group.firstEdit + i,
                           ToNumber(((*light).*group.colour)[i], 255.0F));
            }
            Control<QSlider>(group.firstSlider + i).setEnabled(isOn);
            Control<QLineEdit>(group.firstEdit + i).setEnabled(isOn);
        }
    }
    for (int i = 0; i < 3 && light != nullptr; ++i)
    {
        Control<QLineEdit>(kFirstPositionEdit + i).setText(QString::number(light->m_Position[i]));
    }
}
}

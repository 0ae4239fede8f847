#include "CSettingDlg.h"
#include "Answer.h"
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSlider>
#include <cmath>
#include <limits>

namespace tessarine
{
namespace
{
constexpr int kSliderWidth = 160;
constexpr int kNumberLetters = 5;
constexpr int kColourMaximum = 255;
}

CSettingDlg::CSettingDlg(QWidget* parent, int id, const char* title) : QDialog(parent)
{
    setObjectName(QString::number(id));
    setWindowTitle(title);
    setAttribute(Qt::WA_DeleteOnClose);
    setCursor(Qt::ArrowCursor);
}

QGroupBox* CSettingDlg::MakeSliderGroup(const char* title, std::initializer_list<SliderRow> rows)
{
    auto* group = new QGroupBox(title, this);
    auto* layout = new QGridLayout(group);
    int line = 0;
    for (const SliderRow& row : rows)
    {
        auto* slider = new QSlider(Qt::Horizontal);
        slider->setObjectName(QString::number(row.slider));
        slider->setRange(0, row.maximum);
        slider->setMinimumWidth(kSliderWidth);
        auto* edit = new QLineEdit;
        edit->setObjectName(QString::number(row.edit));
        edit->setReadOnly(true);
        edit->setFixedWidth(kNumberLetters * edit->fontMetrics().horizontalAdvance('0') * 2);
        connect(slider, &QSlider::valueChanged, this,
                [this, row](int position)
                {
                    Answer(
                        [&]
                        {
                            OnHScroll(row.slider, position);
                            Control<QLineEdit>(row.edit).setText(QString::number(position));
                            Invalidate();
                        });
                });
        layout->addWidget(new QLabel(row.label), line, 0);
        layout->addWidget(slider, line, 1);
        layout->addWidget(edit, line, 2);
        ++line;
    }
    return group;
}

QGroupBox* CSettingDlg::MakeColourGroup(const char* title, int firstSlider, int firstEdit)
{
    return MakeSliderGroup(title, {{"R", firstSlider, firstEdit, kColourMaximum},
                                   {"G", firstSlider + 1, firstEdit + 1, kColourMaximum},
                                   {"B", firstSlider + 2, firstEdit + 2, kColourMaximum}});
}

void CSettingDlg::ShowNumber(int slider, int edit, int number)
{
    auto& control = Control<QSlider>(slider);
    const QSignalBlocker quiet(control);
    control.setValue(number);
    Control<QLineEdit>(edit).setText(QString::number(number));
}

void CSettingDlg::Invalidate() const
{
    if (m_Invalidate)
    {
        m_Invalidate();
    }
}

int CSettingDlg::ToNumber(float value, float scale)
{
    const double number = value * scale;
    if (std::isnan(number))
    {
        return 0;
    }
    constexpr double least = std::numeric_limits<int>::min();
    constexpr double most = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(std::max(number, least), most));
}
}

#pragma once
#include <QDialog>
#include <functional>

class QGroupBox;
class QLineEdit;
class QSlider;

namespace tessarine
{
/// What the modeless dialogs have in common that write into a record with each move of a slider. A control has its
/// number for an object name.
class CSettingDlg : public QDialog
{
public:
    /// Whether what it edits is still there. A dialog that has lost it writes nothing.
    virtual bool IsAlive() const = 0;

    /// What is to be done behind each change, so that it shows.
    void SetInvalidate(std::function<void()> invalidate) { m_Invalidate = std::move(invalidate); }

protected:
    /// The dialog goes with its window. Over it the pointer is the ordinary arrow, not the one of the view's tool.
    CSettingDlg(QWidget* parent, int id, const char* title);

    /// Groups stand side by side, so that the dialog fits on a small screen.
    static constexpr int kColumns = 2;

    /// A slider from 0 on, and the read-only text of its number.
    struct SliderRow
    {
        const char* label;
        int slider;
        int edit;
        int maximum;
    };
    QGroupBox* MakeSliderGroup(const char* title, std::initializer_list<SliderRow> rows);
    /// Three sliders from 0 to 255 for red, green and blue, with running numbers.
    QGroupBox* MakeColourGroup(const char* title, int firstSlider, int firstEdit);

    /// The user has moved a slider.
    virtual void OnHScroll(int slider, int position) = 0;

    /// Shows a number without taking it for a move of the user. The text has the number itself, the slider the
    /// nearest one of its range.
    void ShowNumber(int slider, int edit, int number);
    void Invalidate() const;

    template <class TWidget>
    TWidget& Control(int id) const
    {
        return *findChild<TWidget*>(QString::number(id));
    }

    /// value * scale without what stands behind the point, in the range of int; 0 for what is no number.
    static int ToNumber(float value, float scale);

private:
    std::function<void()> m_Invalidate;
};
}

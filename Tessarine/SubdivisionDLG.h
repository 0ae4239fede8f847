#pragma once
#include <QDialog>

namespace tessarine
{
/// Asks for the threshold of the adaptive subdivision.
class CSubdivisionDLG : public QDialog
{
public:
    explicit CSubdivisionDLG(QWidget* parent);

    float GetThreshold() const { return m_fThreshold; }

    /// Takes the number of the edit field. Where it is none, says so and stays open.
    void accept() override;

private:
    float m_fThreshold = 0.0F;
};
}

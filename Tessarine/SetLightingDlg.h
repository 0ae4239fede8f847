#pragma once
#include "CSettingDlg.h"
#include <memory>
#include <vector>

namespace tessarine
{
struct Open3DLight;
class smVec3f;

/// Edits the lights of a scene, one at a time. Several dialogs may edit the same ones, and know nothing of one
/// another.
class CSetLightingDlg : public CSettingDlg
{
public:
    CSetLightingDlg(QWidget* parent, const std::vector<std::shared_ptr<Open3DLight>>& lights);

    bool IsAlive() const override;

protected:
    void OnHScroll(int slider, int position) override;

private:
    struct ColourGroup;
    static const ColourGroup kGroups[3];

    void MakeControls();
    QWidget* MakeCheck(const ColourGroup& group);
    QWidget* MakePositionGroup();
    QWidget* MakeButtons();
    void FillLights();
    void OnSelectLight(const QString& name);
    void Flip(bool Open3DLight::*flag);
    void Refresh();

    std::vector<std::weak_ptr<Open3DLight>> m_Lights;
    std::weak_ptr<Open3DLight> m_pLight; ///< the one that the controls show
};
}

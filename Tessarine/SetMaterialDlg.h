#pragma once
#include "CSettingDlg.h"
#include <memory>

namespace tessarine
{
struct DSMaterial;

/// Edits a material. Its buttons only close it: what the sliders said is in the record already.
class CSetMaterialDlg : public CSettingDlg
{
public:
    CSetMaterialDlg(QWidget* parent, std::weak_ptr<DSMaterial> material);

    bool IsAlive() const override { return !m_pMaterial.expired(); }

protected:
    void OnHScroll(int slider, int position) override;

private:
    struct ColourGroup;
    static const ColourGroup kGroups[4];

    void MakeControls();
    QWidget* MakeButtons();
    void ShowMaterial(const DSMaterial& material);

    std::weak_ptr<DSMaterial> m_pMaterial;
};
}

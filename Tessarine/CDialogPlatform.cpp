#include "CDialogPlatform.h"
#include "SetLightingDlg.h"
#include "SetMaterialDlg.h"
#include "SubdivisionDLG.h"

namespace tessarine
{
std::optional<float> CDialogPlatform::AskAreaThreshold()
{
    CSubdivisionDLG dialog(GetDialogParent());
    if (!AskUser(dialog))
    {
        return std::nullopt;
    }
    return dialog.GetThreshold();
}

void CDialogPlatform::OpenLightingDialog(const std::vector<std::shared_ptr<Open3DLight>>& lights)
{
    Open(new CSetLightingDlg(GetDialogParent(), lights));
}

void CDialogPlatform::OpenMaterialDialog(const std::shared_ptr<DSMaterial>& material)
{
    Open(new CSetMaterialDlg(GetDialogParent(), material));
}

void CDialogPlatform::Open(CSettingDlg* dialog)
{
    dialog->SetInvalidate([this] { InvalidateView(); });
    m_Dialogs.emplace_back(dialog);
    dialog->show();
}

void CDialogPlatform::CloseDeadDialogs()
{
    std::erase_if(m_Dialogs, [](const auto& dialog) { return dialog.isNull(); });
    for (const auto& dialog : m_Dialogs)
    {
        if (!dialog->IsAlive())
        {
            dialog->close();
        }
    }
}
}

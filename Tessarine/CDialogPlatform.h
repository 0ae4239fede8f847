#pragma once
#include "CSettingDlg.h"
#include "QtPlatform.h"
#include <QPointer>
#include <vector>

namespace tessarine
{
/// The machine with a window, with the dialogs of the settings.
class CDialogPlatform : public QtPlatform
{
public:
    std::optional<float> AskAreaThreshold() override;
    void OpenLightingDialog(const std::vector<std::shared_ptr<Open3DLight>>& lights) override;
    void OpenMaterialDialog(const std::shared_ptr<DSMaterial>& material) override;

    /// Closes the dialogs whose lights or material are gone, with their document or with a command that failed.
    void CloseDeadDialogs();

private:
    void Open(CSettingDlg* dialog);

    std::vector<QPointer<CSettingDlg>> m_Dialogs; ///< the open ones, and some that are closed
};
}

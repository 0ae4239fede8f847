#include "CTessarineDoc.h"
#include "CTessarineApp.h"
#include "CTessarineView.h"
#include "File.h"
#include "MainFrm.h"
#include "MenuTables.h"
#include "resource.h"
#include <QFile>
#include <QFileInfo>
#include <optional>

namespace tessarine
{
namespace
{
constexpr char kNew[] = "新建";
constexpr char kOpen[] = "打开";
constexpr char kSave[] = "保存";

QString ToName(const std::filesystem::path& path)
{
    return QFile::decodeName(path.c_str());
}
}

bool CTessarineDoc::OnCommand(int id)
{
    switch (id)
    {
    case ResourceID::FileNew: OnNewDocument(); return true;
    case ResourceID::FileOpen: OnFileOpen(); return true;
    case ResourceID::FileSave: OnFileSave(m_strPath.isEmpty()); return true;
    case ResourceID::FileSaveAs: OnFileSave(true); return true;
    default: return false;
    }
}

IAWorkbench& CTessarineDoc::GetWorkbench()
{
    return m_Frame.GetView().GetWorkbench();
}

bool CTessarineDoc::OnNewDocument()
{
    if (!m_Frame.GetView().RunCommand(kNew, ResourceID::FileNew))
    {
        return false;
    }
    m_strPath.clear();
    ShowName({});
    return true;
}

void CTessarineDoc::OnImported(const std::filesystem::path& model)
{
    if (!model.empty())
    {
        ShowName(ToName(model.filename()));
    }
}

void CTessarineDoc::OnFileOpen()
{
    std::optional<std::filesystem::path> choice;
    m_Frame.GetView().Perform(kOpen, Effect::None, [&] { choice = GetWorkbench().OpenDocument(); });
    if (choice)
    {
        OnOpenDocument(ToName(*choice));
    }
}

bool CTessarineDoc::OnOpenDocument(const QString& path)
{
    if (!m_Frame.GetView().Perform(kOpen, Effect::None,
                                   [&] { ReadFileHead(QFile::encodeName(path).toStdString(), 0); }))
    {
        CTessarineApp::Get().GetRecentFiles().Remove(path);
        return false;
    }
    SetPathName(path);
    m_Frame.GetView().update();
    return true;
}

void CTessarineDoc::OnFileSave(bool askForName)
{
    std::optional<std::filesystem::path> choice;
    if (askForName)
    {
        m_Frame.GetView().Perform(kSave, Effect::None, [&] { choice = GetWorkbench().SaveDocument(); });
    }
    if (choice)
    {
        SetPathName(ToName(*choice));
    }
}

void CTessarineDoc::SetPathName(const QString& path)
{
    m_strPath = path;
    ShowName(QFileInfo(path).fileName());
    CTessarineApp::Get().GetRecentFiles().Add(path);
}

void CTessarineDoc::ShowName(const QString& name)
{
    m_Frame.setWindowTitle(QString::fromStdString(GetWindowTitle(name.toStdString())));
}
}

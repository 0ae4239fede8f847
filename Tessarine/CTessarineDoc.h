#pragma once
#include <QString>
#include <filesystem>

namespace tessarine
{
class CMainFrame;
class IAWorkbench;

/// The document as the framework sees it: a name, and the commands that begin, open and save one. Nothing is read
/// or written by them, as models come and go by import and export.
class CTessarineDoc
{
public:
    /// The frame must have its view, whose workbench holds the models.
    explicit CTessarineDoc(CMainFrame& frame) : m_Frame(frame) {}

    /// @return whether the entry is one of the document's own
    bool OnCommand(int id);

    /// An empty document without a name.
    bool OnNewDocument();

    /// Gives the document the name of a file, which must be there. The models stay.
    bool OnOpenDocument(const QString& path);

    /// Shows the name of a model that was imported. An empty name is none.
    void OnImported(const std::filesystem::path& model);

private:
    void OnFileOpen();
    void OnFileSave(bool askForName);
    void SetPathName(const QString& path);
    void ShowName(const QString& name);
    IAWorkbench& GetWorkbench();

    CMainFrame& m_Frame;
    QString m_strPath; ///< empty while the document has no name
};
}

#include "QtPlatform.h"
#include "Console.h"
#include "Cursor.h"
#include "ErrorLine.h"
#include "File.h"
#include "FileFilter.h"
#include "GLSurface.h"
#include "NativeGLWidget.h"
#include <QApplication>
#include <QCheckBox>
#include <QCursor>
#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QMessageBox>
#include <QPixmap>
#include <utility>

namespace tessarine
{
namespace
{
/// A text that fits into a box: its lines break within long names, and of a very long one the middle is left out.
QString MakeBreakable(QString text)
{
    constexpr qsizetype kMostLetters = 1000;
    constexpr qsizetype kMostOfAWord = 40;
    constexpr QChar kBreak(0x200B); // has no width
    // The line breaks of a name could make the box taller than the screen.
    text.replace('\n', "\\n").replace(QChar::LineSeparator, ' ').replace(QChar::ParagraphSeparator, ' ');
    const QString kept = text.size() <= kMostLetters
                             ? text
                             : text.left(kMostLetters / 2) + " ... " + text.right(kMostLetters / 2);
    QString breakable;
    qsizetype length = 0;
    for (const QChar letter : kept)
    {
        length = letter.isSpace() ? 0 : length + 1;
        if (length > kMostOfAWord && !letter.isLowSurrogate())
        {
            breakable += kBreak;
            length = 1;
        }
        breakable += letter;
    }
    return breakable;
}

void Fill(QMessageBox& box, const std::string& title, const std::string& text)
{
    box.setIcon(QMessageBox::Warning);
    box.setWindowTitle(QString::fromStdString(title));
    box.setTextFormat(Qt::PlainText);
    box.setText(MakeBreakable(QString::fromStdString(text)));
}

/// The cursors that a command put over all others are away while a dialog is open.
class OrdinaryCursors
{
public:
    OrdinaryCursors()
    {
        while (const QCursor* cursor = QGuiApplication::overrideCursor())
        {
            m_Cursors.push_back(*cursor);
            QGuiApplication::restoreOverrideCursor();
        }
    }
    ~OrdinaryCursors()
    {
        for (auto cursor = m_Cursors.rbegin(); cursor != m_Cursors.rend(); ++cursor)
        {
            QGuiApplication::setOverrideCursor(*cursor);
        }
    }
    OrdinaryCursors(const OrdinaryCursors&) = delete;
    OrdinaryCursors& operator=(const OrdinaryCursors&) = delete;

private:
    std::vector<QCursor> m_Cursors;
};

/// True while it lives.
class Flagged
{
public:
    explicit Flagged(bool& flag) : m_bFlag(flag) { m_bFlag = true; }
    ~Flagged() { m_bFlag = false; }
    Flagged(const Flagged&) = delete;
    Flagged& operator=(const Flagged&) = delete;

private:
    bool& m_bFlag;
};

QCursor MakeCursor(const Cursor& cursor)
{
    const Image& image = cursor.image;
    const QImage bottomFirst(image.pixels.data(), image.width, image.height, qsizetype{4} * image.width,
                             QImage::Format_RGBA8888);
    return QCursor(QPixmap::fromImage(bottomFirst.mirrored()), cursor.hotX, cursor.hotY);
}

std::filesystem::path ToPath(const QString& name)
{
    return QFile::encodeName(name).toStdString();
}
}

void QtPlatform::ShowMessage(const std::string& title, const std::string& text)
{
    QMessageBox box(GetDialogParent());
    Fill(box, title, text);
    Show(box);
}

void QtPlatform::ShowRepeatingMessage(const std::string& title, const std::string& text)
{
    if (const auto hidden = m_HiddenMessages.find(text); hidden != m_HiddenMessages.end())
    {
        ++hidden->second;
        return;
    }
    QMessageBox box(GetDialogParent());
    Fill(box, title, text);
    auto* check = new QCheckBox("本次命令中不再显示", &box);
    check->setChecked(true);
    box.setCheckBox(check);
    Show(box);
    if (check->isChecked())
    {
        m_HiddenMessages.emplace(text, 0);
    }
}

void QtPlatform::ForgetHiddenMessages()
{
    const auto hidden = std::exchange(m_HiddenMessages, {}); // also where a line fails
    for (const auto& [text, count] : hidden)
    {
        if (count != 0)
        {
            PrintErrorLine("message box not shown again: " + text + " (" + std::to_string(count) + " times)");
        }
    }
}

void QtPlatform::ShowFailure(const std::string& operation, const std::string& reason, bool wasShown)
{
    if (wasShown)
    {
        return;
    }
    QMessageBox box(GetDialogParent());
    box.setIcon(QMessageBox::Warning);
    box.setWindowTitle("Tessarine");
    box.setTextFormat(Qt::PlainText);
    box.setText(QString("“%1”未能完成。").arg(QString::fromStdString(operation)));
    box.setInformativeText(MakeBreakable(QString::fromStdString(reason)));
    Show(box);
}

/// What the console holds back comes first.
void QtPlatform::Show(QMessageBox& box)
{
    DebugConsole().Flush();
    const OrdinaryCursors cursors;
    box.exec();
}

QWidget* QtPlatform::GetDialogParent() const
{
    QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : m_pMainWindow.data();
}

std::optional<std::filesystem::path> QtPlatform::AskOpenFile(const FileQuestion& question)
{
    if (m_FileAnswer)
    {
        m_ChosenFile.clear();
        return m_ChosenFile = TakeFileAnswer();
    }
    QFileDialog dialog(GetDialogParent(), "打开");
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return Ask(dialog, question);
}

std::optional<std::filesystem::path> QtPlatform::AskSaveFile(const FileQuestion& question)
{
    QFileDialog dialog(GetDialogParent(), "另存为");
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    return Ask(dialog, question);
}

std::optional<std::filesystem::path> QtPlatform::Ask(QFileDialog& dialog, const FileQuestion& question)
{
    m_ChosenFile.clear();
    // One dialog on every desktop, in the language of the window.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    if (!question.title.empty())
    {
        dialog.setWindowTitle(QString::fromStdString(question.title));
    }
    dialog.setDirectory(QFile::decodeName(FindFirstFolder().c_str()));
    dialog.setNameFilters(ParseFileFilter(question.filter));
    dialog.setDefaultSuffix(QString::fromStdString(question.defaultExtension));
    if (!AskUser(dialog))
    {
        return std::nullopt;
    }
    const std::filesystem::path choice = ToPath(dialog.selectedFiles().constFirst());
    SetCurrentFolder(choice.parent_path());
    m_LastFolder = choice.parent_path();
    return m_ChosenFile = choice;
}

std::filesystem::path QtPlatform::FindFirstFolder() const
{
    std::error_code ignored;
    return std::filesystem::is_directory(m_LastFolder, ignored) ? m_LastFolder : GetCurrentFolder();
}

bool QtPlatform::AskUser(QDialog& dialog)
{
    DebugConsole().Flush();
    const OrdinaryCursors cursors;
    const Flagged asking(m_bAsking);
    return dialog.exec() == QDialog::Accepted;
}

void QtPlatform::InvalidateView()
{
    if (m_pView != nullptr)
    {
        m_pView->update();
    }
}

std::filesystem::path QtPlatform::TakeFileAnswer()
{
    std::filesystem::path choice = *std::exchange(m_FileAnswer, std::nullopt);
    if (choice.is_relative())
    {
        choice = GetCurrentFolder() / choice;
    }
    TrySetCurrentFolder(choice.parent_path());
    return choice;
}

void QtPlatform::SetPaneText(int pane, const std::string& text)
{
    if (QLabel* label = m_Panes.at(static_cast<std::size_t>(pane)))
    {
        label->setText(QString::fromStdString(text));
    }
}

void QtPlatform::SetCursorFromFile(const std::string& name)
{
    if (m_pView == nullptr)
    {
        return;
    }
    try
    {
        m_pView->setCursor(MakeCursor(ReadCursor(name)));
    }
    catch (const FileError&)
    {
        m_pView->setCursor(Qt::BlankCursor);
    }
}

void QtPlatform::SetArrowCursor()
{
    if (m_pView != nullptr)
    {
        m_pView->setCursor(Qt::ArrowCursor);
    }
}

void QtPlatform::ShowPopupMenu(int subMenu, int x, int y)
{
    const auto index = static_cast<std::size_t>(subMenu);
    if (m_pView != nullptr && index < m_PopupMenus.size() && m_PopupMenus[index] != nullptr)
    {
        m_PopupMenus[index]->popup(m_pView->mapToGlobal(m_pView->FromPixels({x, y})));
    }
}

std::unique_ptr<GLSurface> QtPlatform::CreateGLSurface()
{
    if (m_pView == nullptr)
    {
        throw GLSurfaceError("ChoosePixelFormat failed", "there is no window to draw on");
    }
    return m_pView->CreateSurface();
}
}

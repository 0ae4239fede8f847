#pragma once
#include "CTessarineApp.h"
#include "RandomChoice.h"
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <filesystem>
#include <fstream>
#include <string>

class QEventLoop;
class QFileDialog;
class QMenu;
class QWindow;

namespace tessarine
{
class CMainFrame;
class CTessarineView;

/// Somebody who does anything with the program: moves, clicks, drags and wheels over the view, keys, buttons, menus,
/// pop-ups, dialogs of all kinds, models dropped on the window, its size, and its end and next start.
///
/// What is modal is used before all else, as a user must. Files are looked for and written in one folder only. A model
/// that has grown beyond kMostFaces makes way for a new document, so that no step of subdivision exceeds four times
/// as many.
class RandomUser
{
public:
    static constexpr std::size_t kMostFaces = 5000;

    /// @param folder with models and datasets; whatever the program writes goes there
    /// @param trace a file that gets each event before it happens; none where the name is empty
    RandomUser(unsigned seed, std::filesystem::path folder, const std::string& trace);

    /// Does so many events, and then leaves whatever is modal.
    void DoEvents(int count);

    /// Closes the dialogs that are open, and begins a new document.
    void PutAllAway();

    int GetEventCount() const { return m_nDone; }
    /// Of the models that were there.
    std::size_t GetMostFaces() const { return m_nMostFaces; }

private:
    struct Habit
    {
        int weight; ///< how often, of the sum of all
        void (RandomUser::*act)();
    };
    static const Habit kHabits[];

    void Tick();
    void LeaveModal(int level);
    void DoOne();
    void DoAnything();

    // What can be done to the view.
    void MoveOverView();
    void PressOnView();
    void ReleaseOnView();
    void ClickOnView();
    void OpenPopup();
    void TurnWheel();
    void TypeOnWindow();
    void PostRedraw();

    // What can be done to the window.
    void ClickButton();
    void ChooseEntry();
    void OpenMenu();
    void DropFile();
    void Resize();
    void Minimise();
    void ChangeFocus();
    void CloseWindow();

    // What can be done to others.
    void UseSettingDialog();
    void CloseSettingDialog();
    void UsePopup(QWidget& popup);
    void UseDialog(QWidget& dialog);
    void UseFileDialog(QFileDialog& dialog);
    void ClickSomewhere(QWidget& window);

    void Choose(int id);
    void Restart();
    void KeepInFolder(QFileDialog& dialog) const;
    QString ChooseName();
    QPoint ChoosePlace(const QWidget& widget);
    std::vector<QWidget*> FindSettingDialogs() const;

    void ClickOn(const QWidget& widget, Qt::MouseButton button, QPoint place);
    void Click(const QPointer<QWindow>& window, Qt::MouseButton button, QPoint place);
    void TypeKey(const QPointer<QWindow>& window);
    void TypeKeys(const QPointer<QWindow>& window);
    void PressKey(const QPointer<QWindow>& window, Qt::Key key, Qt::KeyboardModifier modifier);
    void TypeText(const QPointer<QWindow>& window, const QString& text);
    void Note(const std::string& event);

    static CMainFrame& Frame() { return *CTessarineApp::Get().GetFrame(); }
    static CTessarineView& View();

    RandomChoice m_Choice;
    std::filesystem::path m_Folder;
    std::ofstream m_Trace;
    QTimer m_Next; ///< runs as long as anything handles events
    QEventLoop* m_pLoop = nullptr;
    int m_nOuterLevel = 0; ///< of event loops, where nothing modal is open
    int m_nBusyLevel = 0;  ///< at which an event is being delivered
    int m_nLeft = 0;
    int m_nDone = 0;
    std::size_t m_nMostFaces = 0;
};
}

#include "RecoveryOffer.h"
#include <QDateTime>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <chrono>

namespace tessarine
{
namespace
{
QString Describe(std::filesystem::file_time_type time)
{
    const auto since = std::chrono::file_clock::to_sys(time).time_since_epoch();
    const qint64 milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(since).count();
    return QLocale().toString(QDateTime::fromMSecsSinceEpoch(milliseconds), QLocale::ShortFormat);
}
}

RecoveryAnswer AskAboutRecovery(QWidget& parent, std::filesystem::file_time_type time)
{
    QMessageBox box(&parent);
    box.setIcon(QMessageBox::Question);
    box.setWindowTitle("Tessarine");
    box.setText("Tessarine 上次没有正常退出。是否恢复当时的模型?");
    box.setInformativeText("模型保存于 " + Describe(time) + "。");
    QPushButton* const recover = box.addButton("恢复(&R)", QMessageBox::AcceptRole);
    QPushButton* const discard = box.addButton("丢弃(&D)", QMessageBox::DestructiveRole);
    QPushButton* const later = box.addButton("以后再说(&L)", QMessageBox::RejectRole);
    box.setDefaultButton(recover);
    box.setEscapeButton(later);
    box.exec();
    if (box.clickedButton() == recover)
    {
        return RecoveryAnswer::Recover;
    }
    return box.clickedButton() == discard ? RecoveryAnswer::Discard : RecoveryAnswer::Later;
}
}

#pragma once
#include <QDialog>

namespace tessarine
{
/// The about box.
class CAboutDlg : public QDialog
{
public:
    explicit CAboutDlg(QWidget* parent);
};
}

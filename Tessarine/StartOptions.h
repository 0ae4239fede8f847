#pragma once
#include <QString>
#include <QStringList>
#include <optional>

namespace tessarine
{
/// What the command line of the window asks for.
struct StartOptions
{
    QString file;           ///< opened as the menu's open does; empty for a new document
    QString importModel;    ///< imported as the menu's import does; empty for none
    bool workspace = false; ///< in the user's own folder to work in
    bool help = false;
    bool version = false;
    QString error; ///< what is wrong with the words; empty when all is well
};

/// Reads the words of the command line, the name of the program first.
StartOptions ParseStartOptions(const QStringList& words);

/// What --help prints.
QString GetStartHelp();
}

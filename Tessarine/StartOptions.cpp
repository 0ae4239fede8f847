#include "StartOptions.h"
#include <QCommandLineParser>

namespace tessarine
{
namespace
{
constexpr char kHelp[] = R"(tessarine [OPTION]... [FILE]

Opens the workbench's window.

  FILE             a document to begin with, as "打开" (open) takes it; models come by --import
  --import MODEL   imports an OBJ model, as "导入" (import) does
  --workspace      works in the folder Tessarine among your documents, which is made with its samples on first use;
                   FILE is then a model to import
  -h, --help       shows this
  -v, --version    shows the version

Qt's own options (-style, -display, ...) are taken as well. The window needs an X display (DISPLAY) with OpenGL;
tessarine-batch does the same work without one.
)";

/// Files count from the folder where the program was started.
QString TakeOne(const QStringList& words, QString& error)
{
    if (words.size() > 1)
    {
        error = "one file at a time: " + words.join(' ');
    }
    else if (words.size() == 1 && words.constFirst().isEmpty())
    {
        error = "the name of the file is empty";
    }
    return words.isEmpty() ? QString() : words.constFirst();
}
}

StartOptions ParseStartOptions(const QStringList& words)
{
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions); // as Qt's own
    const QCommandLineOption import("import", QString(), "MODEL");
    const QCommandLineOption workspace("workspace");
    const QCommandLineOption help(QStringList{"h", "help"});
    const QCommandLineOption version(QStringList{"v", "version"});
    parser.addOptions({import, workspace, help, version});

    StartOptions options;
    if (!parser.parse(words))
    {
        options.error = parser.errorText();
        return options;
    }
    options.help = parser.isSet(help);
    options.version = parser.isSet(version);
    options.workspace = parser.isSet(workspace);
    const QStringList files = parser.positionalArguments();
    options.importModel =
        TakeOne(options.workspace ? parser.values(import) + files : parser.values(import), options.error);
    options.file = options.workspace ? QString() : TakeOne(files, options.error);
    return options;
}

QString GetStartHelp()
{
    return kHelp;
}
}

#include "CTessarineApp.h"
#include "Display.h"
#include "GuiTest.h"
#include "ResourceFolder.h"
#include <cstdlib>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    using namespace tessarine;
    testing::InitGoogleTest(&argc, argv);
    const TemporaryFolder home; // of the settings, and of models that outlive their windows
    setenv("XDG_CONFIG_HOME", home.GetPath().c_str(), 1);
    setenv("XDG_STATE_HOME", home.GetPath().c_str(), 1);
    setenv("XDG_RUNTIME_DIR", home.GetPath().c_str(), 1);
    setenv("DBUS_SESSION_BUS_ADDRESS",
           "disabled:", 1); // the desktop's bus has nothing to do with these windows
    PrepareForDisplay();
    DebugConsole().SetSink([](std::string_view text) { GetTerminalText() += text; });
    QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    CTessarineApp app(argc, argv);
    SetResourceFolder(TESSARINE_FOLDER); // this program stands elsewhere
    return RUN_ALL_TESTS();
}

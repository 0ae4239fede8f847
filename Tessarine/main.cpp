#include "CTessarineApp.h"
#include "File.h"
#include "Memory.h"

int main(int argc, char** argv)
{
    tessarine::KeepFreedMemory();
    tessarine::RemoveTemporaryFilesOnSignals();
    return tessarine::RunTessarine(argc, argv);
}

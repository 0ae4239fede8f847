#include "BatchTool.h"
#include "Memory.h"

int main(int argc, char** argv)
{
    tessarine::KeepFreedMemory();
    return tessarine::RunBatchTool({argv + 1, argv + argc});
}

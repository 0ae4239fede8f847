#include "File.h"
#include "SamplesTool.h"

int main(int argc, char** argv)
{
    tessarine::RemoveTemporaryFilesOnSignals();
    return tessarine::RunSamplesTool({argv + 1, argv + argc});
}

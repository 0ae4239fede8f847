#include "Workspace.h"
#include <cstdio>
#include <exception>

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "usage: tessarine-samples FOLDER\n");
        return 2;
    }
    try
    {
        tessarine::WriteWorkspace(argv[1]);
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "tessarine-samples: %s\n", error.what());
        return 1;
    }
    return 0;
}

#include "Workspace.h"
#include <exception>
#include <iostream>

/// coarsesamples FOLDER: the sample workspace with small pictures, and with models as coarse as all operations take them.
int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::cerr << "usage: coarsesamples FOLDER\n";
        return 2;
    }
    try
    {
        tessarine::WriteWorkspace(argv[1], {.coarseness = 1.1, .imageWidth = 80, .imageHeight = 60});
        return 0;
    }
    catch (const std::exception& error)
    {
        std::cerr << "coarsesamples: " << error.what() << '\n';
        return 1;
    }
}

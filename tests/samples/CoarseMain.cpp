#include "Workspace.h"
#include <cstdlib>
#include <exception>
#include <iostream>

/// coarsesamples FOLDER COARSENESS: the sample workspace with so many times longer edges, and with small pictures.
int main(int argc, char** argv)
{
    if (argc != 3)
    {
        std::cerr << "usage: coarsesamples FOLDER COARSENESS\n";
        return 2;
    }
    try
    {
        tessarine::WriteWorkspace(
            argv[1], {.coarseness = std::strtod(argv[2], nullptr), .imageWidth = 80, .imageHeight = 60});
        return 0;
    }
    catch (const std::exception& error)
    {
        std::cerr << "coarsesamples: " << error.what() << '\n';
        return 1;
    }
}

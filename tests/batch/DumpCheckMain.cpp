#include "DumpCheck.h"
#include <fstream>
#include <iostream>

/// dumpcheck FILE: tells what a dump holds, or the first invariant that it breaks (exit status 1).
int main(int argc, char** argv)
{
    std::ifstream dump;
    if (argc == 2)
    {
        dump.open(argv[1], std::ios::binary);
    }
    if (!dump.is_open())
    {
        std::cerr << "usage: dumpcheck FILE\n";
        return 2;
    }
    const tessarine::DumpFindings findings = tessarine::CheckDump(dump);
    if (!findings.breach.empty())
    {
        std::cerr << "dumpcheck: " << findings.breach << '\n';
        return 1;
    }
    std::cout << findings.solids << " solids, " << findings.vertices << " vertices, " << findings.edges
              << " edges, " << findings.faces << " faces, " << findings.halfEdges << " half-edges; "
              << findings.displacedHalfEdges << " displaced and " << findings.loneHalfEdges
              << " lone half-edges, " << findings.clashingEdges << " edges of clashing orientation, "
              << findings.tornHalfEdges << " half-edges torn from their edge\n";
    return 0;
}

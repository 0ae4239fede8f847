#include "FitError.h"
#include "Assert.h"
#include "Console.h"
#include "File.h"
#include "IOTextOutput.h"
#include <algorithm>
#include <cmath>

namespace tessarine
{
namespace
{
void WritePoint(IOTextOutput& text, const smVec3d& p)
{
    text << p.x << " " << p.y << " " << p.z << " ";
}
}

FitError CheckFootPoints(const std::vector<smVec3d>& samples, const std::vector<smVec3d>& targets,
                         ReplacingFile& file)
{
    ASSERT(samples.size() == targets.size());
    IOTextOutput text([&file](std::string_view piece) { file.Write(piece); });
    FitError error;
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        const double distance = (samples[i] - targets[i]).Length();
        WritePoint(text, samples[i]);
        WritePoint(text, targets[i]);
        text << distance << "\n";
        error.total += distance * distance;
        error.largest = std::max(error.largest, distance);
    }
    text.Flush();
    error.average = std::sqrt(error.total / static_cast<double>(samples.size()));
    return error;
}

void SayError(const FitError& error)
{
    constexpr char kStars[] = "***********************";
    DebugConsole() << kStars << '\n'
                   << "Total Error: " << error.total << '\n'
                   << "Max Error: " << error.largest << '\n'
                   << "Average Error: " << error.average << '\n'
                   << kStars << '\n';
}
}

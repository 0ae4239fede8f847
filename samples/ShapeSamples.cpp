#include "ShapeSamples.h"

namespace tessarine
{
std::vector<ShapeSample> GetFitSamples()
{
    return {{"box", MakeBoxShape(), 0.12, 12000},
            {"bunny", MakeBunnyShape(), 0.035, 20000},
            {"dragon", MakeDragonShape(), 0.0225, 60000},
            {"horse", MakeHorseShape(), 0.04, 12000}};
}

ShapeSample GetManSample()
{
    return {"man", MakeManShape(), 0.035, 5000};
}
}

#include "FuzzImage.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tessarine::FuzzImage(data, size, "gif");
    return 0;
}

#include "OCTNODE.h"

namespace tessarine
{
OCTNODE::~OCTNODE() = default;
}

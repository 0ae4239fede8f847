#pragma once

namespace tessarine
{
/// Whether none but the program itself and the libraries of the language are on the way from here to main: no other
/// shared library waits for what is asked for here, neither in the main thread nor in one of its own.
bool IsOwnCodeRunning();
}

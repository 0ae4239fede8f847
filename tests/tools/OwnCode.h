#pragma once

namespace tessarine
{
/// Whether none but the program itself and the libraries of the language are on the way from here to main: no other
/// shared library waits for what is asked for here, neither in the main thread nor in one of its own.
bool IsOwnCodeRunning();

/// Whether the code at `address` is that of the nearest neighbours' library, which forgets the part of a tree that it
/// holds when memory fails it.
bool IsForgetfulCode(const void* address);
}

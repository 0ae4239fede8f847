#pragma once

namespace tessarine
{
/// Empties a list and frees its memory, which `list = {}` would keep for what comes next. For what a command leaves in
/// itself: the history keeps the command.
template <class TList>
void FreeList(TList& list) noexcept
{
    TList().swap(list);
}
}

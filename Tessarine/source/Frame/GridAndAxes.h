#pragma once

namespace tessarine
{
/// What stands in the empty scene. Both need a current context, and turn lighting on at their end.

/// The ground plane y = 0 as lines half a unit apart, every tenth one black.
void DrawGrid();

/// The axes in red, green and blue, five units long, with arrow heads.
void DrawAxes();
}

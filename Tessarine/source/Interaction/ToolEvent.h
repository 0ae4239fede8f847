#pragma once

namespace tessarine
{
/// One event of the view, on its way to the tool on top of the stack.
struct ToolEvent
{
    enum class Kind
    {
        LeftButtonDown,
        LeftButtonUp,
        RightButtonDown,
        RightButtonUp,
        MouseMove,
        KeyDown,
        KeyUp,
        SetCursor
    };

    Kind kind = Kind::MouseMove;
    int x = 0; ///< pixels of the client area, from the left
    int y = 0; ///< pixels of the client area, from the top
    unsigned key = 0;
    unsigned flags = 0; ///< as the window system gives them; no tool reads them
};
}

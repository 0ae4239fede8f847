#pragma once
#include <array>

namespace tessarine
{
/// The texts that the panes of the status bar start with, from the left. Those with blanks at their end
/// stand for a longer text, and give their pane its width.
inline constexpr std::array<const char*, 7> kPaneTexts{"就绪",
                                                       "顶点数              ",
                                                       "面片数                   ",
                                                       "相机坐标                                  ",
                                                       "大写",
                                                       "数字",
                                                       "滚动"};

/// The pane of the message line.
inline constexpr int kMessagePane = 0;
/// The first of the three panes that show the locked keys: capitals, numbers, scrolling.
inline constexpr int kFirstKeyPane = 4;
}

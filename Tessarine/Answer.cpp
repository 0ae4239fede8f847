#include "Answer.h"
#include "ErrorLine.h"
#include "FailureText.h"
#include "TryTo.h"

namespace tessarine
{
/// No box: it would need what is missing, and the next paint event would come for another.
void TellLostAnswer() noexcept
{
    TryTo(
        [] {
            PrintErrorLine("tessarine: the window could not do all that was asked of it: " +
                           DescribeFailure());
        });
}
}

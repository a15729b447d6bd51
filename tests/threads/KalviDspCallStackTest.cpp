#include "threads/KalviDspCallStack.h"

#include "math/KalviDspVector.h"

#include <gtest/gtest.h>

namespace vlk {
namespace {

String callerNameAtDepth(int depth)
{
    return depth == 0 ? getCallerName() : callerNameAtDepth(depth - 1);
}

TEST(CallStack, DropsTheTwoOutermostFrames)
{
    const Vector<String> stack = getCallStack(8, true);
    // The test runner is deeper than eight frames, so all eight were taken.
    EXPECT_EQ(stack.size(), 6u);
    EXPECT_TRUE(getCallStack(2, true).empty());
    EXPECT_TRUE(getCallStack(0, false).empty());
}

TEST(CallStack, LinesOfAnotherShapeGiveEmptyEntries)
{
    // This system's backtrace lines are not six tokens long.
    for (const String& entry : getCallStack(6, false))
        EXPECT_TRUE(entry.empty()) << entry;
}

TEST(CallStack, CallerNameIsAlwaysEmpty)
{
    for (int depth = 0; depth < 20; depth += 3)
        EXPECT_EQ(callerNameAtDepth(depth), "") << "depth " << depth;
}

} // namespace
} // namespace vlk

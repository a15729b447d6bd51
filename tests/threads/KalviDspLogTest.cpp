#include "threads/KalviDspLog.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace vlk {
namespace {

TEST(LogMessage, ReachesStandardErrorThroughTheSystemLog)
{
    testing::internal::CaptureStderr();
    logMessage("AudioFilePlayer::Process bug 1 ?");
    const std::string output = testing::internal::GetCapturedStderr();
    EXPECT_EQ(output, "vlk[" + std::to_string(getpid()) + "]: AudioFilePlayer::Process bug 1 ?\n");
}

TEST(LogMessage, OneCallIsOneReportEvenWithLineFeedsInside)
{
    testing::internal::CaptureStderr();
    logMessage("first\nsecond");
    const std::string output = testing::internal::GetCapturedStderr();
    EXPECT_EQ(output, "vlk[" + std::to_string(getpid()) + "]: first\nsecond\n");
}

} // namespace
} // namespace vlk

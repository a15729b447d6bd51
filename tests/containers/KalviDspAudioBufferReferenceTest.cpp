#include "containers/KalviDspAudioBufferReference.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace vlk {
namespace {

TEST(AudioBufferReferenceView, PointsIntoTheForeignChannelsAtTheOffset)
{
    std::vector<float> left{0, 1, 2, 3, 4, 5};
    std::vector<float> right{10, 11, 12, 13, 14, 15};
    float* foreign[] = {left.data(), right.data()};
    AudioBufferReference view;
    EXPECT_EQ(view.getNumChannels(), 0u);
    EXPECT_EQ(view.getNumSamples(), 0u);
    view.setChannels(foreign, 2, 4, 2);
    ASSERT_EQ(view.getNumChannels(), 2u);
    ASSERT_EQ(view.getNumSamples(), 4u);
    EXPECT_EQ(view.getChannel(0), left.data() + 2);
    EXPECT_EQ(view.getChannel(1), right.data() + 2);
    // Writes land in the owner's samples, within the window only.
    view.fillChannel(1, -1.0f);
    EXPECT_EQ(right, (std::vector<float>{10, 11, -1, -1, -1, -1}));
    view.clear();
    EXPECT_EQ(left, (std::vector<float>{0, 1, 0, 0, 0, 0}));
    EXPECT_EQ(view.getMemoryInMB(), 0.0f);
}

TEST(AudioBufferReferenceView, ChangingChannelCountsSettlesWithoutReallocating)
{
    std::vector<float> samples(32);
    float* foreign[] = {samples.data(), samples.data() + 8, samples.data() + 16, samples.data() + 24};
    AudioBufferReference view;
    view.setChannels(foreign, 4, 8, 0);
    float** const array = view.getArrayOfChannels();
    view.setChannels(foreign, 2, 8, 0);
    view.setChannels(foreign, 4, 8, 1);
    EXPECT_EQ(view.getArrayOfChannels(), array);
    EXPECT_EQ(view.getChannel(3), samples.data() + 25);
}

TEST(AudioBufferReferenceView, ResizeKeepsThePointersOfTheChannelsThatStay)
{
    std::vector<float> samples(8);
    float* foreign[] = {samples.data(), samples.data() + 4};
    AudioBufferReference view;
    view.setChannels(foreign, 2, 4, 0);
    view.resizeKeepingContents(3, 2);
    EXPECT_EQ(view.getNumSamples(), 2u);
    EXPECT_EQ(view.getChannel(1), samples.data() + 4);
    EXPECT_EQ(view.getChannel(2), nullptr);
}

// A page that may only be read: a write to it ends the process.
class ReadOnlyPage
{
public:
    ReadOnlyPage() : size(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)))
    {
        void* mapped = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        page = mapped == MAP_FAILED ? nullptr : static_cast<float*>(mapped);
        if (page == nullptr)
            return;
        for (std::size_t index = 0; index < size / sizeof(float); ++index)
            page[index] = static_cast<float>(index);
        mprotect(page, size, PROT_READ);
    }
    ~ReadOnlyPage()
    {
        if (page != nullptr)
            munmap(page, size);
    }
    ReadOnlyPage(const ReadOnlyPage&) = delete;
    ReadOnlyPage& operator=(const ReadOnlyPage&) = delete;

    float* samples() const { return page; }
    std::uint64_t numSamples() const { return size / sizeof(float); }

private:
    std::size_t size;
    float* page = nullptr;
};

TEST(AudioBufferReferenceCopyDeathTest, UnityCopyOntoItselfTouchesNoMemory)
{
    const ReadOnlyPage page;
    ASSERT_NE(page.samples(), nullptr);
    float* foreign[] = {page.samples()};
    AudioBufferReference view;
    view.setChannels(foreign, 1, page.numSamples(), 0);
    EXPECT_EXIT(
        {
            view.copyToChannel(0, 0, page.samples(), page.numSamples(), 1.0f);
            std::exit(view.getChannel(0)[5] == 5.0f ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    // The page does refuse writes: a copy from elsewhere dies.
    const std::vector<float> other(page.numSamples(), 1.0f);
    EXPECT_DEATH(view.copyToChannel(0, 0, other.data(), other.size(), 1.0f), "");
}

} // namespace
} // namespace vlk

#include "KalviDspExternalTestObject.h"
#include "KalviDspHostTestSupport.h"

#include "external/KalviDspDumpOutlet.h"
#include "external/KalviDspSfPlayListener.h"
#include "external/KalviDspSfPlayObject.h"

#include <gtest/gtest.h>
#include <memory>

namespace vlk::external::test {
namespace {

using Lines = std::vector<std::string>;

// A listener whose owner has a dump outlet and a player that it is not registered with, called directly.
class ListenerFixture
{
public:
    ListenerFixture()
    {
        object = newTestObject();
        CreateDumpOutlet(object);
        capture = std::make_unique<host::test::OutletCapture>(GetDumpOutlet(object));
        owner = reinterpret_cast<SfPlayObject*>(object);
        std::construct_at(&owner->player, std::make_unique<AudioFilePlayer>(1, 192000));
        listener = std::make_unique<SfPlayListener>(owner);
    }
    ~ListenerFixture()
    {
        listener.reset();
        std::destroy_at(&owner->player);
        object_free(object);
    }
    Lines messages() { return capture->messages(); }

    std::unique_ptr<SfPlayListener> listener;

private:
    t_object* object = nullptr;
    SfPlayObject* owner = nullptr;
    std::unique_ptr<host::test::OutletCapture> capture;
};

TEST(SfPlayListenerProgress, HalfPercentForwardStepsAndTheEndsAlwaysPass)
{
    ListenerFixture fixture;
    for (float percent : {0.0f, 0.3f, 0.5f, 0.9f, 99.6f, 99.7f, 100.0f, 100.2f, 100.5f, 50.0f, 0.0f, 0.0f})
        fixture.listener->progressChanged(percent);
    // A step back is no step forward: 50 after 100.5 stays silent, and only 0 restarts the count.
    EXPECT_EQ(fixture.messages(), (Lines{"progress 0.", "progress 0.5", "progress 99.599998", "progress 100.",
                                         "progress 100.5", "progress 0.", "progress 0."}));
}

TEST(SfPlayListenerBuffering, TwoPercentStepsEitherWayAndTheEndsAlwaysPass)
{
    ListenerFixture fixture;
    for (float percent : {1.0f, 1.99f, 2.0f, 3.5f, 0.0f, 100.0f, 98.5f, 97.5f, 99.0f, 50.0f})
        fixture.listener->bufferingChanged(percent);
    EXPECT_EQ(fixture.messages(),
              (Lines{"buffering 2.", "buffering 0.", "buffering 100.", "buffering 97.5", "buffering 50."}));
}

TEST(SfPlayListenerEvents, EndBangsAndMarkersCarryTheLowSixteenBitsOfTheirIdentifier)
{
    ListenerFixture fixture;
    fixture.listener->endOfFile();
    fixture.listener->markerReached({0x12345, 4410, "verse"});
    fixture.listener->markerReached({0xFFFFFFFE, 0, ""});
    EXPECT_EQ(fixture.messages(), (Lines{"bang", "marker 9029 4410 verse", "marker 65534 0 \"\""}));
}

} // namespace
} // namespace vlk::external::test

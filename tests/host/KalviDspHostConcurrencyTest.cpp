#include "KalviDspHostTestSupport.h"

#include "KalviDspHostAudioDriver.h"
#include "KalviDspHostBoxFactory.h"
#include "KalviDspHostDeferQueue.h"
#include "KalviDspHostDspGraph.h"
#include "KalviDspHostMessageDispatch.h"
#include "KalviDspHostObject.h"
#include "KalviDspHostSearchPath.h"

#include <gtest/gtest.h>
#include <thread>

namespace vlk::host::test {
namespace {

void send(t_object* x, const std::string& message)
{
    std::vector<t_atom> list = atoms(message);
    dispatchMessage(x, list[0].a_w.w_sym, static_cast<long>(list.size() - 1), list.data() + 1);
}

// Built to be run under ThreadSanitizer: the audio thread renders while the main thread sends messages
// and runs deferred calls that another thread queues.
TEST(HostConcurrency, MessagesDeferredCallsAndAudioAtOnce)
{
    SearchPath::instance().addFolder(HOST_TEST_EXTERNALS_DIR);
    DeferQueue::setMainThread();
    DspGraph::instance().setSampleRate(44100);
    DspGraph::instance().setVectorSize(64);
    ConsoleCapture console;
    BoxFactory::Result result = BoxFactory::create(atoms("hosttest~ @numchannels 2"));
    ASSERT_NE(result.object, nullptr) << result.failure;
    t_object* x = result.object;
    OutletCapture dump(outletsLeftToRight(x).back());
    AudioDriver& driver = AudioDriver::instance();
    driver.setSpeed(8);
    DspGraph::instance().start();
    driver.startRender(300);
    int rounds = 0;
    while (driver.isRendering() || rounds < 3) {
        send(x, "level " + std::to_string(rounds % 10 / 10.0));
        send(x, "echo " + std::to_string(rounds));
        send(x, "later");
        send(x, "fromthread");
        DeferQueue::instance().drain();
        ++rounds;
    }
    driver.waitUntilRendered();
    DspGraph::instance().stop();
    driver.shutdown();
    send(x, "report");
    EXPECT_EQ(console.lines().back(),
              "post: hosttest~: performs 300, frames 19200, off main thread 300, disabled 0, dsp 0");
    EXPECT_EQ(dump.messages().size(), 2u * static_cast<std::size_t>(rounds));
    object_free(x);
}

} // namespace
} // namespace vlk::host::test

#include "KalviDspHostTestSupport.h"

#include "KalviDspHostAudioDriver.h"
#include "KalviDspHostDspGraph.h"

#include "z_dsp.h"

#include <chrono>
#include <gtest/gtest.h>
#include <thread>

namespace vlk::host::test {
namespace {

// Two signal inlets and three signal outlets; output c of frame k is 10 * (c + 1) + k.
struct Signaller
{
    t_pxobject ob;
    long long frames;
    long long performs;
    long performsOnMain;
    long direct;
};

std::vector<std::string> dspCalls;

void signallerPerform(Signaller* x, t_object*, double** ins, long numins, double** outs, long numouts, long n,
                      long, void* userparam)
{
    const long long first = __atomic_load_n(&x->frames, __ATOMIC_RELAXED);
    for (long c = 0; c < numouts; ++c)
        for (long i = 0; i < n; ++i)
            outs[c][i] = 10.0 * (c + 1) + static_cast<double>(first + i) + ins[numins - 1][i] +
                         (userparam == nullptr ? 0 : 1000);
    __atomic_store_n(&x->frames, first + n, __ATOMIC_RELEASE);
    __atomic_add_fetch(&x->performs, 1, __ATOMIC_ACQ_REL);
    if (systhread_ismainthread())
        __atomic_add_fetch(&x->performsOnMain, 1, __ATOMIC_ACQ_REL);
}

void signallerDsp64(Signaller* x, t_object* dsp64, short* count, double samplerate, long maxvectorsize, long)
{
    std::string call = "dsp64";
    for (int i = 0; i < 5; ++i)
        call.append(" ").append(std::to_string(count[i]));
    call +=
        " sr " + std::to_string(static_cast<long>(samplerate)) + " vector " + std::to_string(maxvectorsize);
    dspCalls.push_back(call);
    if (x->direct)
        dsp_add64(dsp64, &x->ob.z_ob, reinterpret_cast<t_perfroutine64>(signallerPerform), 0, nullptr);
    else
        object_method(dsp64, gensym("dsp_add64"), x, signallerPerform, 0, nullptr);
}

void signallerFree(Signaller* x)
{
    z_dsp_free(&x->ob);
}

t_class* signallerClass()
{
    static t_class* c = [] {
        t_class* made = class_new("signaller", nullptr, reinterpret_cast<method>(signallerFree),
                                  sizeof(Signaller), nullptr, 0);
        class_addmethod(made, reinterpret_cast<method>(signallerDsp64), "dsp64", A_CANT, 0);
        class_dspinit(made);
        return made;
    }();
    return c;
}

Signaller* newSignaller()
{
    auto* x = static_cast<Signaller*>(object_alloc(signallerClass()));
    outlet_new(x, nullptr);
    z_dsp_setup(&x->ob, 2);
    for (int i = 0; i < 3; ++i)
        outlet_new(x, "signal");
    return x;
}

class HostDsp : public ::testing::Test
{
protected:
    void SetUp() override
    {
        dspCalls.clear();
        graph.setSampleRate(48000);
        graph.setVectorSize(16);
        driver.setSpeed(0);
        driver.setRecorder([this](const float* frames, std::size_t numFrames, int numChannels) {
            recordedChannels = numChannels;
            recorded.insert(recorded.end(), frames,
                            frames + numFrames * static_cast<std::size_t>(numChannels));
        });
    }
    void TearDown() override
    {
        graph.stop();
        graph.setDisabled(false);
        driver.setRecorder({});
        driver.shutdown();
    }

    DspGraph& graph = DspGraph::instance();
    AudioDriver& driver = AudioDriver::instance();
    std::vector<float> recorded;
    int recordedChannels = 0;
};

TEST_F(HostDsp, Dsp64GetsTheCountsOfInletsThenOutletsAndTheSettings)
{
    Signaller* x = newSignaller();
    EXPECT_EQ(sys_getdspstate(), 0);
    graph.start();
    EXPECT_EQ(sys_getdspstate(), 1);
    EXPECT_EQ(sys_getsr(), 48000.0f);
    EXPECT_EQ(sys_getblksize(), 16);
    EXPECT_EQ(sys_getdspobjdspstate(&x->ob.z_ob), 1);
    graph.setConnectedOutlets(&x->ob.z_ob, {true, false, true});
    graph.stop();
    EXPECT_EQ(sys_getdspobjdspstate(&x->ob.z_ob), 0);
    graph.start();
    EXPECT_EQ(dspCalls, (std::vector<std::string>{"dsp64 0 0 1 1 1 sr 48000 vector 16",
                                                  "dsp64 0 0 1 0 1 sr 48000 vector 16"}));
    object_free(x);
}

TEST_F(HostDsp, PerformRunsOnTheAudioThreadAndItsOutputsAreRecordedInOrder)
{
    Signaller* first = newSignaller();
    Signaller* second = newSignaller();
    second->direct = 1;
    graph.start();
    driver.render(3);
    EXPECT_EQ(first->performs, 3);
    EXPECT_EQ(second->performs, 3);
    EXPECT_EQ(first->performsOnMain, 0);
    ASSERT_EQ(recordedChannels, 6);
    ASSERT_EQ(recorded.size(), 6u * 48);
    // Frame 17, second object's third outlet: 10 * 3 + 17.
    EXPECT_EQ(recorded[17 * 6 + 5], 47.0f);
    EXPECT_EQ(recorded[0], 10.0f);
    EXPECT_EQ(recorded[47 * 6 + 1], 67.0f);
    object_free(first);
    object_free(second);
}

TEST_F(HostDsp, WithDspOffTheClockRendersSilence)
{
    Signaller* x = newSignaller();
    driver.render(2);
    EXPECT_EQ(x->performs, 0);
    ASSERT_EQ(recorded.size(), 3u * 32);
    for (float sample : recorded)
        EXPECT_EQ(sample, 0.0f);
    object_free(x);
}

TEST_F(HostDsp, DisabledObjectsAreSkippedUnlessTheyIgnoreIt)
{
    Signaller* muted = newSignaller();
    Signaller* ignoring = newSignaller();
    ignoring->ob.z_misc |= Z_IGNORE_DISABLE;
    graph.setDisabled(true);
    EXPECT_EQ(muted->ob.z_disabled, 1);
    graph.start();
    driver.render(1);
    EXPECT_EQ(muted->performs, 0);
    EXPECT_EQ(ignoring->performs, 1);
    EXPECT_EQ(recorded[0], 0.0f);
    EXPECT_EQ(recorded[3], 10.0f);
    graph.setDisabled(false);
    driver.render(1);
    EXPECT_EQ(muted->performs, 1);
    object_free(muted);
    object_free(ignoring);
}

TEST_F(HostDsp, ObjectsMadeOrFreedWhileRunningJoinOrLeaveTheChain)
{
    Signaller* first = newSignaller();
    graph.start();
    driver.render(1);
    Signaller* second = newSignaller();
    driver.render(1);
    EXPECT_EQ(second->performs, 1);
    EXPECT_EQ(recordedChannels, 6);
    object_free(first);
    driver.render(1);
    EXPECT_EQ(recordedChannels, 3);
    EXPECT_EQ(second->performs, 2);
    object_free(second);
}

TEST_F(HostDsp, OrderFlagsPutObjectsFirstOrLast)
{
    Signaller* last = newSignaller();
    last->ob.z_misc |= Z_PUT_LAST;
    Signaller* first = newSignaller();
    first->ob.z_misc |= Z_PUT_FIRST;
    Signaller* skipped = newSignaller();
    skipped->ob.z_misc |= Z_DONT_ADD;
    first->direct = 1;
    graph.start();
    EXPECT_EQ(dspCalls.size(), 2u);
    object_free(last);
    object_free(first);
    object_free(skipped);
}

TEST_F(HostDsp, TheAudioThreadKeepsRealTimeAtTheGivenSpeed)
{
    Signaller* x = newSignaller();
    graph.start();
    driver.setSpeed(2);
    // 150 vectors of 16 frames at 48 kHz are 50 ms of audio, 25 ms at twice real time.
    const auto start = std::chrono::steady_clock::now();
    driver.render(150);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_GE(seconds, 0.9 * 149 * 16 / 48000.0 / 2);
    EXPECT_LT(seconds, 5.0);
    EXPECT_EQ(x->performs, 150);
    object_free(x);
}

} // namespace
} // namespace vlk::host::test

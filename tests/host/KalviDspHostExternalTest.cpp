#include "KalviDspHostTestSupport.h"

#include "KalviDspHostBoxFactory.h"
#include "KalviDspHostDeferQueue.h"
#include "KalviDspHostExternalLoader.h"
#include "KalviDspHostObject.h"
#include "KalviDspHostSearchPath.h"
#include "KalviDspHostWavWriter.h"

#include <gtest/gtest.h>
#include <sndfile.h>

namespace vlk::host::test {
namespace {

TEST(HostExternals, FoundByObjectNameLoadedOnceAndCreatedFromBoxText)
{
    SearchPath::instance().addFolder(HOST_TEST_EXTERNALS_DIR);
    DeferQueue::setMainThread();
    ConsoleCapture console;
    BoxFactory::Result result = BoxFactory::create(atoms("hosttest~ @numchannels 2 @level 3"));
    ASSERT_NE(result.object, nullptr) << result.failure;
    EXPECT_EQ(object_attr_getfloat(result.object, gensym("level")), 1.0);
    EXPECT_EQ(object_attr_getsym(result.object, gensym("mode")), gensym("ramp"));
    std::vector<Outlet*> outlets = outletsLeftToRight(result.object);
    ASSERT_EQ(outlets.size(), 3u);
    EXPECT_TRUE(outlets[1]->isSignal());
    EXPECT_FALSE(outlets[2]->isSignal());
    std::string failure;
    EXPECT_TRUE(ExternalLoader::instance().load("hosttest~", failure));
    EXPECT_TRUE(console.lines().empty());
    object_free(result.object);
}

TEST(HostExternals, UnknownClassesAndRefusedCreationsSayWhy)
{
    SearchPath::instance().addFolder(HOST_TEST_EXTERNALS_DIR);
    BoxFactory::Result unknown = BoxFactory::create(atoms("no.such.object~"));
    EXPECT_FALSE(unknown.classFound);
    EXPECT_NE(unknown.failure.find("no.such.object~" + ExternalLoader::fileSuffix()), std::string::npos);
    BoxFactory::Result refused = BoxFactory::create(atoms("hosttest~ fail"));
    EXPECT_TRUE(refused.classFound);
    EXPECT_EQ(refused.object, nullptr);
}

TEST(HostWavWriter, LibsndfileReadsBackChannelsRateAndSamples)
{
    ScratchFolder scratch;
    const std::string path = scratch.path() + "/written.wav";
    {
        WavWriter writer;
        ASSERT_TRUE(writer.open(path, 3, 22050));
        std::vector<float> frames;
        for (int i = 0; i < 300; ++i)
            frames.push_back(static_cast<float>(i) / 1000.0f - 0.1f);
        ASSERT_TRUE(writer.write(frames.data(), 60));
        ASSERT_TRUE(writer.write(frames.data() + 180, 40));
        ASSERT_TRUE(writer.close());
    }
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
    EXPECT_EQ(info.channels, 3);
    EXPECT_EQ(info.samplerate, 22050);
    EXPECT_EQ(info.frames, 100);
    EXPECT_EQ(info.format, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    std::vector<float> read(300);
    EXPECT_EQ(sf_readf_float(file, read.data(), 100), 100);
    sf_close(file);
    EXPECT_FLOAT_EQ(read[0], -0.1f);
    EXPECT_FLOAT_EQ(read[179], 0.079f);
    EXPECT_FLOAT_EQ(read[180], 0.08f);
    EXPECT_FLOAT_EQ(read[299], 0.199f);
}

} // namespace
} // namespace vlk::host::test

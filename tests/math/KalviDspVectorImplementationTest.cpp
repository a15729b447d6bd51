#include "math/KalviDspVectorImplementation.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <limits>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

// One page of floats that any write turns into a crash.
class ReadOnlySamples
{
public:
    explicit ReadOnlySamples(float value)
        : size(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
          memory(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
    {
        for (std::size_t i = 0; i < count(); ++i)
            samples()[i] = value;
        mprotect(memory, size, PROT_READ);
    }
    ~ReadOnlySamples() { munmap(memory, size); }

    float* samples() const { return static_cast<float*>(memory); }
    std::size_t count() const { return size / sizeof(float); }

private:
    std::size_t size;
    void* memory;
};

constexpr float sentinel = 12345.0f;

// Four samples to work on and a fifth behind them that no operation may reach.
std::vector<float> withSentinel(std::vector<float> samples)
{
    samples.push_back(sentinel);
    return samples;
}

TEST(CopyWithGain, UnityGainOnTheSamePointerTouchesNoMemory)
{
    const ReadOnlySamples page(0.25f);
    vlk::copyWithGain(page.samples(), page.samples(), page.count(), 1.0f);
    EXPECT_EQ(page.samples()[0], 0.25f);
}

TEST(CopyWithGain, CountZeroWritesNothingWhateverTheGain)
{
    const ReadOnlySamples page(0.25f);
    const std::vector<float> source(4, 1.0f);
    for (const float gain : {1.0f, 0.0f, -1.0f, 0.5f}) {
        vlk::copyWithGain(page.samples(), source.data(), 0, gain);
        vlk::copyWithGain(page.samples(), page.samples(), 0, gain);
    }
    EXPECT_EQ(page.samples()[0], 0.25f);
    vlk::copyWithGain(nullptr, nullptr, 0, 0.5f);
}

TEST(CopyWithGain, ZeroGainClearsToPositiveZeroAlsoWhenNegative)
{
    // Multiplying by -0.0 would leave -0.0 in positive samples: a clear leaves +0.0.
    for (const float gain : {0.0f, -0.0f}) {
        std::vector<float> inPlace = withSentinel({1.0f, -2.0f, 3.0f, 4.0f});
        vlk::copyWithGain(inPlace.data(), inPlace.data(), 4, gain);
        const std::vector<float> source{1.0f, -2.0f, 3.0f, 4.0f};
        std::vector<float> destination = withSentinel({9.0f, 9.0f, 9.0f, 9.0f});
        vlk::copyWithGain(destination.data(), source.data(), 4, gain);
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_EQ(inPlace[i], 0.0f);
            EXPECT_FALSE(std::signbit(inPlace[i]));
            EXPECT_EQ(destination[i], 0.0f);
            EXPECT_FALSE(std::signbit(destination[i]));
        }
        EXPECT_EQ(inPlace[4], sentinel);
        EXPECT_EQ(destination[4], sentinel);
    }
}

TEST(CopyWithGain, UnityGainCopiesExactly)
{
    const std::vector<float> source{-0.0f, std::numeric_limits<float>::denorm_min(), 1e30f, -7.5f};
    std::vector<float> destination = withSentinel({9.0f, 9.0f, 9.0f, 9.0f});
    vlk::copyWithGain(destination.data(), source.data(), 4, 1.0f);
    EXPECT_EQ(std::vector<float>(destination.begin(), destination.begin() + 4), source);
    EXPECT_TRUE(std::signbit(destination[0]));
    EXPECT_EQ(destination[4], sentinel);
}

TEST(CopyWithGain, MinusOneNegates)
{
    const std::vector<float> source{1.0f, -2.0f, 0.0f, 4.5f};
    std::vector<float> destination = withSentinel({9.0f, 9.0f, 9.0f, 9.0f});
    vlk::copyWithGain(destination.data(), source.data(), 4, -1.0f);
    EXPECT_EQ(destination, withSentinel({-1.0f, 2.0f, -0.0f, -4.5f}));
    EXPECT_TRUE(std::signbit(destination[2]));
    EXPECT_EQ(source[0], 1.0f);

    std::vector<float> inPlace = withSentinel({1.0f, -2.0f, 3.0f, 4.5f});
    vlk::copyWithGain(inPlace.data(), inPlace.data(), 4, -1.0f);
    EXPECT_EQ(inPlace, withSentinel({-1.0f, 2.0f, -3.0f, -4.5f}));
}

TEST(CopyWithGain, OtherGainsScale)
{
    const std::vector<float> source{1.0f, -2.0f, 3.0f, 4.0f};
    std::vector<float> destination = withSentinel({9.0f, 9.0f, 9.0f, 9.0f});
    vlk::copyWithGain(destination.data(), source.data(), 4, 2.5f);
    EXPECT_EQ(destination, withSentinel({2.5f, -5.0f, 7.5f, 10.0f}));

    std::vector<float> inPlace = withSentinel({1.0f, -2.0f, 3.0f, 4.0f});
    vlk::copyWithGain(inPlace.data(), inPlace.data(), 4, 0.5f);
    EXPECT_EQ(inPlace, withSentinel({0.5f, -1.0f, 1.5f, 2.0f}));
}

TEST(VectorArithmetic, MultiplyInPlaceMultipliesElementWise)
{
    std::vector<float> floats = withSentinel({1.0f, -2.0f, 3.0f, 0.5f});
    const std::vector<float> floatFactors{2.0f, 3.0f, -1.0f, 0.5f};
    vlk::multiplyInPlace(floats.data(), floatFactors.data(), 4);
    EXPECT_EQ(floats, withSentinel({2.0f, -6.0f, -3.0f, 0.25f}));

    std::vector<double> doubles{1.0, -2.0, 3.0, 0.1, 99.0};
    const std::vector<double> doubleFactors{2.0, 3.0, -1.0, 0.1};
    vlk::multiplyInPlace(doubles.data(), doubleFactors.data(), 4);
    EXPECT_EQ(doubles, (std::vector<double>{2.0, -6.0, -3.0, 0.1 * 0.1, 99.0}));
}

TEST(VectorArithmetic, FillSetsCountElements)
{
    std::vector<float> floats = withSentinel({1.0f, 2.0f, 3.0f, 4.0f});
    vlk::fill(floats.data(), 4, -0.5f);
    EXPECT_EQ(floats, withSentinel({-0.5f, -0.5f, -0.5f, -0.5f}));

    std::vector<double> doubles{1.0, 2.0, 3.0};
    vlk::fill(doubles.data(), 2, 0.1);
    EXPECT_EQ(doubles, (std::vector<double>{0.1, 0.1, 3.0}));
}

TEST(VectorArithmetic, ConvertWidensExactlyAndNarrowsWithRounding)
{
    const std::vector<float> floats{0.1f, -0.0f, std::numeric_limits<float>::denorm_min(),
                                    std::numeric_limits<float>::max(),
                                    -std::numeric_limits<float>::infinity()};
    std::vector<double> wide(floats.size() + 1, 99.0);
    vlk::convert(wide.data(), floats.data(), floats.size());
    std::vector<float> back(floats.size());
    vlk::convert(back.data(), wide.data(), wide.size() - 1);
    EXPECT_EQ(back, floats);
    EXPECT_EQ(wide[0], static_cast<double>(0.1f));
    EXPECT_TRUE(std::signbit(wide[1]));
    EXPECT_EQ(wide.back(), 99.0);

    const std::vector<double> doubles{0.1, 1.0 / 3.0};
    std::vector<float> narrow(2);
    vlk::convert(narrow.data(), doubles.data(), 2);
    EXPECT_EQ(narrow, (std::vector<float>{0.1f, 1.0f / 3.0f}));
}

#if defined(__x86_64__) || defined(__aarch64__)

// A product that is a denormal unless flushed; volatile keeps the compiler from folding it.
float denormalProduct()
{
    volatile float a = 1e-20f;
    volatile float b = 1e-20f;
    return a * b;
}

TEST(DisableDenormals, FlushesOnTheCallingThreadOnly)
{
    // New threads inherit the register of the thread that creates them: start from the default, whatever an
    // earlier test in this process left on this thread.
    std::fenv_t saved;
    std::fegetenv(&saved);
    std::fesetenv(FE_DFL_ENV);
    float flushed = -1.0f;
    std::thread([&] {
        vlk::disableDenormals();
        flushed = denormalProduct();
    }).join();
    EXPECT_EQ(flushed, 0.0f);

    // Created by this thread, whose register was never changed, so it inherits nothing.
    float kept = 0.0f;
    std::thread([&] { kept = denormalProduct(); }).join();
    EXPECT_GT(kept, 0.0f);
    EXPECT_EQ(std::fpclassify(kept), FP_SUBNORMAL);
    std::fesetenv(&saved);
}

#endif

} // namespace

#include "math/KalviDspVectorImplementation.h"

#include <cstdint>
#include <cstring>

#if defined(__x86_64__)
#include <xmmintrin.h>
#endif

namespace vlk {

namespace {

template <typename Sample> void multiplyElements(Sample* a, const Sample* b, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        a[i] *= b[i];
}

template <typename Sample> void fillElements(Sample* destination, std::size_t count, Sample value)
{
    for (std::size_t i = 0; i < count; ++i)
        destination[i] = value;
}

template <typename To, typename From>
void convertElements(To* destination, const From* source, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        destination[i] = static_cast<To>(source[i]);
}

void scale(float* destination, const float* source, std::size_t count, float gain)
{
    for (std::size_t i = 0; i < count; ++i)
        destination[i] = source[i] * gain;
}

void negate(float* destination, const float* source, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        destination[i] = -source[i];
}

} // namespace

void multiplyInPlace(double* a, const double* b, std::size_t count)
{
    multiplyElements(a, b, count);
}

void multiplyInPlace(float* a, const float* b, std::size_t count)
{
    multiplyElements(a, b, count);
}

void copyWithGain(float* destination, const float* source, std::size_t count, float gain)
{
    // Also keeps null pointers of an empty block away from memcpy and memset.
    if (count == 0)
        return;
    const std::size_t bytes = count * sizeof(float);
    if (destination == source) {
        if (gain == 1.0f)
            return;
        if (gain == 0.0f)
            std::memset(destination, 0, bytes);
        else
            scale(destination, source, count, gain);
        return;
    }
    if (gain == 1.0f)
        std::memcpy(destination, source, bytes);
    else if (gain == 0.0f)
        std::memset(destination, 0, bytes);
    else if (gain == -1.0f)
        negate(destination, source, count);
    else
        scale(destination, source, count, gain);
}

void fill(double* destination, std::size_t count, double value)
{
    fillElements(destination, count, value);
}

void fill(float* destination, std::size_t count, float value)
{
    fillElements(destination, count, value);
}

void convert(double* destination, const float* source, std::size_t count)
{
    convertElements(destination, source, count);
}

void convert(float* destination, const double* source, std::size_t count)
{
    convertElements(destination, source, count);
}

void disableDenormals()
{
#if defined(__x86_64__)
    // Flush-to-zero (0x8000) and denormals-are-zero (0x0040) of MXCSR.
    _mm_setcsr(_mm_getcsr() | 0x8040);
#elif defined(__aarch64__)
    // The FZ bit of FPCR flushes both inputs and results.
    std::uint64_t control = 0;
    asm volatile("mrs %0, fpcr" : "=r"(control));
    control |= std::uint64_t{1} << 24;
    asm volatile("msr fpcr, %0" : : "r"(control));
#endif
}

} // namespace vlk

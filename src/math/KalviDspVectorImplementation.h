#pragma once

#include <cstddef>

namespace vlk {

// Vector arithmetic of the audio code, stride 1. None allocates: all are fit for the audio thread.

// a[i] *= b[i].
void multiplyInPlace(double* a, const double* b, std::size_t count);
void multiplyInPlace(float* a, const float* b, std::size_t count);

// destination[i] = source[i] * gain, with the exact gains 1, 0 and -1 done without a multiplication;
// destination may be source. A gain of 1 on the same pointer touches no memory.
void copyWithGain(float* destination, const float* source, std::size_t count, float gain);

void fill(double* destination, std::size_t count, double value);
void fill(float* destination, std::size_t count, float value);

// Widening and narrowing copies.
void convert(double* destination, const float* source, std::size_t count);
void convert(float* destination, const double* source, std::size_t count);

// Sets flush-to-zero and denormals-are-zero for the calling thread only, for good: the audio thread calls
// it before it processes. Does nothing on a processor without such a control.
void disableDenormals();

} // namespace vlk

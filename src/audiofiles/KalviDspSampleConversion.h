#pragma once

#include <cstdint>

namespace vlk {

// Converters from interleaved file bytes to separate channels of 32-bit words: left-justified signed
// integers (the sample's top bit in bit 31) for integer formats, the float's own bits for float formats.
// No dither, clipping or normalisation.
//
// All share one form. channels holds numDestinationChannels pointers; a null one is skipped, one at or
// beyond numSourceChannels gets zeros. Each channel is written from destinationOffset on, numFrames words.
// source is numFrames frames of numSourceChannels samples. A channel whose first word lies where its first
// sample does, with a frame narrower than a word, is converted from the last frame back, so that widening
// in place never overwrites bytes not yet read.
//
// None allocates; the readers pass blocks of a few kilobytes so that the block stays in cache over the
// sweeps of its channels.

// WAV, 8 bits: the sign bit is flipped.
void convertUInt8(int** channels, std::uint64_t destinationOffset, std::uint32_t numDestinationChannels,
                  const std::uint8_t* source, std::uint32_t numSourceChannels, std::uint64_t numFrames);
// AIFF, 8 bits, either byte order.
void convertInt8(int** channels, std::uint64_t destinationOffset, std::uint32_t numDestinationChannels,
                 const std::uint8_t* source, std::uint32_t numSourceChannels, std::uint64_t numFrames);
void convertInt16LittleEndian(int** channels, std::uint64_t destinationOffset,
                              std::uint32_t numDestinationChannels, const std::uint8_t* source,
                              std::uint32_t numSourceChannels, std::uint64_t numFrames);
void convertInt24LittleEndian(int** channels, std::uint64_t destinationOffset,
                              std::uint32_t numDestinationChannels, const std::uint8_t* source,
                              std::uint32_t numSourceChannels, std::uint64_t numFrames);
// The two 32-bit forms of one byte order copy the bits alike: a float's bits pass unchanged, NaN included.
void convertInt32LittleEndian(int** channels, std::uint64_t destinationOffset,
                              std::uint32_t numDestinationChannels, const std::uint8_t* source,
                              std::uint32_t numSourceChannels, std::uint64_t numFrames);
void convertFloat32LittleEndian(int** channels, std::uint64_t destinationOffset,
                                std::uint32_t numDestinationChannels, const std::uint8_t* source,
                                std::uint32_t numSourceChannels, std::uint64_t numFrames);
void convertInt16BigEndian(int** channels, std::uint64_t destinationOffset,
                           std::uint32_t numDestinationChannels, const std::uint8_t* source,
                           std::uint32_t numSourceChannels, std::uint64_t numFrames);
void convertInt24BigEndian(int** channels, std::uint64_t destinationOffset,
                           std::uint32_t numDestinationChannels, const std::uint8_t* source,
                           std::uint32_t numSourceChannels, std::uint64_t numFrames);
void convertInt32BigEndian(int** channels, std::uint64_t destinationOffset,
                           std::uint32_t numDestinationChannels, const std::uint8_t* source,
                           std::uint32_t numSourceChannels, std::uint64_t numFrames);
void convertFloat32BigEndian(int** channels, std::uint64_t destinationOffset,
                             std::uint32_t numDestinationChannels, const std::uint8_t* source,
                             std::uint32_t numSourceChannels, std::uint64_t numFrames);

// In place: each left-justified integer becomes the float of full scale 1.0, rounded to single precision
// and scaled by 2^-31, so the most negative sample gives exactly -1.0 and 0x7FFFFFFF rounds up to 1.0.
void convertToFloat(int* samples, std::uint64_t numSamples);

} // namespace vlk

#pragma once

#include <atomic>
#include <cstddef>
#include <vector>

namespace vlk::host {

// A single-producer single-consumer ring of floats: the audio thread writes recorded frames, the main
// thread reads them out to the file. The positions are the only shared state.
class SampleRing
{
public:
    explicit SampleRing(std::size_t capacity);

    std::size_t getFreeSpace() const;
    std::size_t getNumReady() const;
    // Producer: false, writing nothing, when there is not room for all.
    bool write(const float* samples, std::size_t count);
    // Consumer: up to count samples; returns how many.
    std::size_t read(float* samples, std::size_t count);

private:
    std::vector<float> storage;
    std::atomic<std::size_t> writePosition{0};
    std::atomic<std::size_t> readPosition{0};
};

} // namespace vlk::host

#include "KalviDspHostSampleRing.h"

namespace vlk::host {

SampleRing::SampleRing(std::size_t capacity) : storage(capacity + 1) {}

std::size_t SampleRing::getNumReady() const
{
    const std::size_t w = writePosition.load(std::memory_order_acquire);
    const std::size_t r = readPosition.load(std::memory_order_acquire);
    return w >= r ? w - r : storage.size() - r + w;
}

std::size_t SampleRing::getFreeSpace() const
{
    return storage.size() - 1 - getNumReady();
}

bool SampleRing::write(const float* samples, std::size_t count)
{
    if (count > getFreeSpace())
        return false;
    std::size_t w = writePosition.load(std::memory_order_relaxed);
    for (std::size_t i = 0; i < count; ++i) {
        storage[w] = samples[i];
        w = w + 1 == storage.size() ? 0 : w + 1;
    }
    writePosition.store(w, std::memory_order_release);
    return true;
}

std::size_t SampleRing::read(float* samples, std::size_t count)
{
    const std::size_t ready = getNumReady();
    const std::size_t n = count < ready ? count : ready;
    std::size_t r = readPosition.load(std::memory_order_relaxed);
    for (std::size_t i = 0; i < n; ++i) {
        samples[i] = storage[r];
        r = r + 1 == storage.size() ? 0 : r + 1;
    }
    readPosition.store(r, std::memory_order_release);
    return n;
}

} // namespace vlk::host

#include "external/KalviDspSfPlayListener.h"

#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspDumpOutlet.h"
#include "external/KalviDspOutletSendFormatted.h"
#include "external/KalviDspSfPlayObject.h"

#include <cmath>
#include <cstdint>

namespace vlk {

SfPlayListener::SfPlayListener(SfPlayObject* owner) : owner(owner) {}

SfPlayListener::~SfPlayListener()
{
    owner->player->removeListener(this);
}

// No absolute value: progress runs forward, and a return to the start comes as 0, which always passes.
void SfPlayListener::progressChanged(float percent)
{
    if (percent != 0.0f && percent != 100.0f && percent - lastProgress.load(std::memory_order_relaxed) < 0.5f)
        return;
    OutletSendFormatted(GetDumpOutlet(asObject(owner)), commonSymbols->progress, "f", 1,
                        static_cast<double>(percent));
    lastProgress.store(percent, std::memory_order_relaxed);
}

void SfPlayListener::bufferingChanged(float percent)
{
    if (percent != 0.0f && percent != 100.0f &&
        std::abs(percent - lastBuffering.load(std::memory_order_relaxed)) < 2.0f)
        return;
    OutletSendFormatted(GetDumpOutlet(asObject(owner)), commonSymbols->buffering, "f", 1,
                        static_cast<double>(percent));
    lastBuffering.store(percent, std::memory_order_relaxed);
}

void SfPlayListener::endOfFile()
{
    BangDumpOutlet(asObject(owner));
}

void SfPlayListener::markerReached(const AudioFilesMetadata::Marker& marker)
{
    OutletSendFormatted(GetDumpOutlet(asObject(owner)), commonSymbols->marker, "lls", 3,
                        static_cast<std::int64_t>(marker.identifier & 0xFFFF),
                        static_cast<std::int64_t>(marker.position), gensym(marker.name.c_str()));
}

} // namespace vlk

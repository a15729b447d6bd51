#include "external/KalviDspSfPlayListener.h"

#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspDumpOutlet.h"
#include "external/KalviDspOutletSendFormatted.h"
#include "external/KalviDspSfPlayObject.h"

#include "ext_systhread.h"

#include <cmath>
#include <cstdint>

namespace vlk {

SfPlayListener::SfPlayListener(SfPlayObject* owner)
    : owner(owner), deliveryClock(clock_new(this, reinterpret_cast<method>(deliver))),
      bufferingQelem(static_cast<t_qelem*>(qelem_new(this, reinterpret_cast<method>(sendPendingBuffering))))
{
}

SfPlayListener::~SfPlayListener()
{
    owner->player->removeListener(this);
    clock_unset(deliveryClock);
    clock_free(deliveryClock);
    qelem_free(bufferingQelem);
}

void SfPlayListener::scheduleDelivery()
{
    if (owner->player->hasQueuedEvents())
        clock_delay(deliveryClock, 0);
}

void SfPlayListener::deliver(SfPlayListener* listener)
{
    listener->owner->player->deliverQueuedEvents();
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

// The buffering thread is neither the main thread nor the scheduler's: its level waits for the qelem, which
// sends the last one.
void SfPlayListener::bufferingChanged(float percent)
{
    if (systhread_ismainthread() == 0 && systhread_istimerthread() == 0) {
        pendingBuffering.store(percent, std::memory_order_relaxed);
        qelem_set(bufferingQelem);
        return;
    }
    sendBuffering(percent);
}

void SfPlayListener::sendPendingBuffering(SfPlayListener* listener)
{
    listener->sendBuffering(listener->pendingBuffering.load(std::memory_order_relaxed));
}

void SfPlayListener::sendBuffering(float percent)
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

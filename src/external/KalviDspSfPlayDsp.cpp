#include "external/KalviDspSfPlayDsp.h"

#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspHostBoundary.h"

#include <cstdio>

namespace vlk {

void SfPlayDsp64(SfPlayObject* x, t_object* dsp64, short* count, double sampleRate, long maxVectorSize,
                 long /*flags*/)
{
    CallAtHostBoundary(asObject(x), bugWords, [x, maxVectorSize, sampleRate] {
        x->player->prepare(static_cast<std::uint32_t>(maxVectorSize < 0 ? 0 : maxVectorSize), true,
                           static_cast<float>(sampleRate));
    });
    x->player->setConnections(count);
    object_method(dsp64, commonSymbols->dsp_add64, x, SfPlayPerform64, 0, nullptr);
}

void SfPlayPerform64(SfPlayObject* x, t_object* /*dsp64*/, double** ins, long /*numIns*/, double** outs,
                     long /*numOuts*/, long sampleFrames, long /*flags*/, void* /*userParam*/)
{
    if (x->player == nullptr)
        return;
    x->player->perform(outs, ins, static_cast<std::uint32_t>(sampleFrames), x->ob.z_disabled, x->mute,
                       x->bypass);
    x->listener->scheduleDelivery();
}

void SfPlayPostDspState(SfPlayObject* x)
{
    for (const String& line : x->player->getDspStatus())
        object_post(asObject(x), "%s", line.c_str());
}

void SfPlayAssist(SfPlayObject* x, void* /*box*/, long kind, long index, char* text)
{
    if (kind == ASSIST_OUTLET)
        std::snprintf(text, ASSIST_MAX_STRING_LEN, "%s",
                      x->player->getOutputName(static_cast<std::int32_t>(index)).c_str());
    else if (kind == ASSIST_INLET)
        std::snprintf(text, ASSIST_MAX_STRING_LEN, "%s",
                      x->player->getInputName(static_cast<std::int32_t>(index)).c_str());
}

} // namespace vlk

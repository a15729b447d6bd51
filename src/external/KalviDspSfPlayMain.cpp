// velur.sfplay~: the entry point that the host calls once, on first use of the class.
#include "external/KalviDspCommonMethods.h"
#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspDspObject.h"
#include "external/KalviDspMaxMspExternal.h"
#include "external/KalviDspMethodDocumentation.h"
#include "external/KalviDspMethodRegistration.h"
#include "external/KalviDspSfPlayAttributes.h"
#include "external/KalviDspSfPlayDsp.h"
#include "external/KalviDspSfPlayLifecycle.h"
#include "external/KalviDspSfPlayMessages.h"

using namespace vlk;

namespace {

method asMethod(auto function)
{
    return reinterpret_cast<method>(function);
}

void addMessages(t_class* c)
{
    AddGimmeMethod(c, "open", asMethod(SfPlayOpen));
    AddIntMethod(c, asMethod(SfPlayInt));
    AddGimmeMethod(c, "seek", asMethod(SfPlaySeek));
    AddNoArgumentMethod(c, "resume", asMethod(SfPlayResume));
    AddNoArgumentMethod(c, "info", asMethod(SfPlayInfo));
    AddMethodDocumentation(c, "info", Velur::MaxMspExternal::GetMethodDocumentation("info").c_str());
    AddNoArgumentMethod(c, "pause", asMethod(SfPlayPause));
    AddNoArgumentMethod(c, "getlength", asMethod(SfPlayGetLength));
    AddNoArgumentMethod(c, "getnumchannels", asMethod(SfPlayGetNumChannels));
    AddNoArgumentMethod(c, "getfilename", asMethod(SfPlayGetFileName));
}

} // namespace

void ext_main(void* /*r*/)
{
    InitCommonSymbols();
    t_class* c = class_new("velur.sfplay~", asMethod(SfPlayNew), asMethod(SfPlayFree),
                           static_cast<long>(sizeof(SfPlayObject)), nullptr, A_GIMME, 0);
    SetClassDictionaryConstructor(c);
    AddSfPlayDocumentationAttributes(c);
    AddSfPlayOptionAttributes(c);
    AddCommonMethods(c);
    AddPostDspStatusMethod(c);
    AddDumpMethod(c);
    AddDsp64Method(c, asMethod(SfPlayDsp64));
    AddPostDspStateMethod(c, asMethod(SfPlayPostDspState));
    AddAssistMethod(c, asMethod(SfPlayAssist));
    addMessages(c);
    AddSfPlayStructureAttributes(c);
    class_dspinit(c);
    class_register(maxCommonSymbols->s_box, c);
    sfPlayClass = c;
}

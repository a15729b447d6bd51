#include "external/KalviDspCommonMessages.h"

#include "external/KalviDspAtomsToText.h"
#include "external/KalviDspAttributeDump.h"
#include "external/KalviDspAttributePosts.h"
#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspDictionaryState.h"
#include "external/KalviDspDumpOutlet.h"
#include "external/KalviDspHostBoundary.h"
#include "external/KalviDspJsonState.h"
#include "external/KalviDspMaxAttribute.h"
#include "external/KalviDspMaxXmlDocumentation.h"

#include "ext_dictobj.h"
#include "z_dsp.h"

namespace vlk {
namespace {

constexpr const char* copyrightLine = " \u00a9 2016-2026 velur";

bool startsWithSymbol(long argc, const t_atom* argv)
{
    return argc > 0 && argv != nullptr && argv[0].a_type == A_SYM;
}

// The dictionary of the named attributes; null, after the error line, when an argument is no symbol.
t_dictionary* dictionaryOfNamedAttributes(t_object* x, long argc, t_atom* argv)
{
    t_dictionary* d = dictionary_new();
    for (long i = 0; i < argc; ++i) {
        if (argv[i].a_type != A_SYM) {
            ReportInvalidMessage(x, argc, argv, "invalid message : dumpdict");
            object_free(d);
            return nullptr;
        }
        AppendAttributeToDictionary(x, d, argv[i].a_w.w_sym);
    }
    return d;
}

const char* processingStatus(t_object* x)
{
    if (object_attr_getlong(x, commonSymbols->mute) == 1 || reinterpret_cast<t_pxobject*>(x)->z_disabled != 0)
        return "dsp processing is muted";
    if (object_attr_getlong(x, commonSymbols->bypass) == 1)
        return "dsp processing is bypassed";
    return "dsp processing is enabled";
}

} // namespace

void kalvimax_version(t_object* x)
{
    const MaxAttribute version(x, "externalversion");
    if (version.IsNull()) {
        object_error(x, "Couldnt get external version");
        return;
    }
    if (const std::optional<String> text = version.GetSymbolLabel())
        object_post(x, "Version %s", text->c_str());
    else
        object_post(x, "unknown version");
}

void kalvimax_postattributes(t_object* x, t_symbol* /*s*/, long argc, t_atom* argv)
{
    CallAtHostBoundary(x, errorWords, [&] {
        if (argc == 0)
            PostAllAttributes(x);
        else if (argc == 1 && startsWithSymbol(argc, argv))
            PostValueOfAttribute(x, argv[0].a_w.w_sym->s_name);
        else
            ReportInvalidMessage(x, argc, argv, "invalid message : postattributes");
    });
}

void kalvimax_dump(t_object* x, t_symbol* /*s*/, long argc, t_atom* argv)
{
    CallAtHostBoundary(x, errorWords, [&] {
        void* outlet = GetDumpOutlet(x);
        if (outlet == nullptr)
            object_error(x, "no dump outlet");
        if (argc == 0)
            DumpAllAttributes(x, outlet);
        else if (startsWithSymbol(argc, argv))
            DumpAttribute(x, argv[0].a_w.w_sym->s_name, outlet);
        else
            ReportInvalidMessage(x, argc, argv, "invalid message : dump");
    });
}

// The dictionary is freed once its message has gone through the patch: left registered, one empty
// dictionary per message would pile up for the life of the process. A receiver that retained it keeps it.
void kalvimax_dumpdict(t_object* x, t_symbol* /*s*/, long argc, t_atom* argv)
{
    CallAtHostBoundary(x, errorWords, [&] {
        t_dictionary* d =
            argc == 0 ? MakeDictionaryFromAttributes(x) : dictionaryOfNamedAttributes(x, argc, argv);
        if (d == nullptr)
            return;
        OutputDictionaryToDumpOutlet(x, d);
        object_free(d);
    });
}

// The dictionary is freed once written rather than left to the host, which never frees it.
void kalvimax_exportdict(t_object* x, t_symbol* /*s*/, long argc, t_atom* argv)
{
    CallAtHostBoundary(x, errorWords, [&] {
        t_dictionary* d = MakeDictionaryFromAttributes(x);
        if (d == nullptr)
            return;
        const String path =
            startsWithSymbol(argc, argv) ? String(argv[0].a_w.w_sym->s_name) : ChooseJsonFileToSave();
        if (!path.empty())
            WriteDictionaryAsJson(x, d, path.c_str());
        object_free(d);
    });
}

void kalvimax_dictionary(t_object* x, t_symbol* name)
{
    t_dictionary* d = dictobj_findregistered_retain(name);
    if (d == nullptr) {
        object_error(x, "unable to reference dictionary named %s", name->s_name);
        return;
    }
    bool parsed = false;
    CallAtHostBoundary(x, errorWords, [&] { parsed = ReadDictionaryIntoAttributes(x, d); });
    dictobj_release(d);
    if (!parsed)
        object_error(x, "error parsing dictionary named %s", name->s_name);
}

// Mute wins over bypass.
void kalvimax_postdspstatus(t_object* x)
{
    object_post(x, "%s", processingStatus(x));
    object_post(x, "%s", sys_getdspstate() != 0 ? "dsp is on" : "dsp is off");
}

void kalvimax_generatexml(t_object* x)
{
    CallAtHostBoundary(x, errorWords, [x] {
        const AttributeSortMode mode = AttributeSortMode::Alphabetical;
        MaxXmlDocumentation().GenerateXmlDocumentation(x, "./_c74_ref.xsl", &mode, copyrightLine);
    });
}

} // namespace vlk

// hosttest~: an external written against the SDK's headers alone, to test the host before the real object
// exists. Outlets, left to right: one signal outlet per channel, then the dump outlet. Its state for pattr
// and presets is its level and its mode. Box argument "fail" makes creation fail.
#include "ext.h"
#include "ext_dictobj.h"
#include "ext_obex.h"
#include "z_dsp.h"

#include <cstdio>
#include <cstring>
#include <thread>

namespace {

struct HostTest
{
    t_pxobject ob;
    long numchannels;
    float level;
    double freq;
    t_symbol* mode;
    long secret;
    long values[4];
    long numvalues;
    // The signal outlets made at creation; the attribute may change later.
    long numsignals;
    void* dumpout;
    // Written by the audio thread, read by the main thread: atomic builtins, since instances are raw memory.
    long long frames;
    long long performs;
    long performsOffMainThread;
};

t_class* hostTestClass = nullptr;

void sendDump(HostTest* x, const char* selector, long ac, t_atom* av)
{
    outlet_anything(x->dumpout, gensym(selector), static_cast<short>(ac), av);
}

void* hostTestNew(t_symbol* /*s*/, long argc, t_atom* argv)
{
    if (argc > 0 && atom_getsym(argv) == gensym("fail"))
        return nullptr;
    t_dictionary* d = object_dictionaryarg(argc, argv);
    if (d == nullptr) {
        object_error(nullptr, "no box dictionary");
        return nullptr;
    }
    auto* x = static_cast<HostTest*>(object_alloc(hostTestClass));
    t_atom_long channels = 1;
    dictionary_getlong(d, gensym("numchannels"), &channels);
    x->numchannels = channels < 1 ? 1 : (channels > 8 ? 8 : channels);
    x->dumpout = outlet_new(x, nullptr);
    object_obex_store(x, gensym("dumpout"), static_cast<t_object*>(x->dumpout));
    dsp_setup(&x->ob, 1);
    x->numsignals = x->numchannels;
    for (long i = 0; i < x->numsignals; ++i)
        outlet_new(x, "signal");
    x->ob.z_misc |= Z_NO_INPLACE;
    attr_dictionary_check(x, d);
    attr_dictionary_process(x, d);
    return x;
}

void hostTestFree(HostTest* x)
{
    dsp_free(&x->ob);
}

void hostTestBang(HostTest* x)
{
    outlet_bang(x->dumpout);
}

void hostTestInt(HostTest* x, t_atom_long n)
{
    outlet_int(x->dumpout, n);
}

void hostTestFloat(HostTest* x, double f)
{
    outlet_float(x->dumpout, f);
}

void hostTestList(HostTest* x, t_symbol* /*s*/, long argc, t_atom* argv)
{
    outlet_list(x->dumpout, nullptr, static_cast<short>(argc), argv);
}

void hostTestEcho(HostTest* x, t_symbol* s, long argc, t_atom* argv)
{
    sendDump(x, s->s_name, argc, argv);
}

void hostTestLaterDone(HostTest* x, t_symbol* /*s*/, long argc, t_atom* argv)
{
    object_post(&x->ob.z_ob, "later on main thread: %d", systhread_ismainthread());
    sendDump(x, "later", argc, argv);
}

void hostTestLater(HostTest* x, t_symbol* s, long argc, t_atom* argv)
{
    defer_low(x, reinterpret_cast<method>(hostTestLaterDone), s, static_cast<short>(argc), argv);
}

void hostTestFromThreadDone(HostTest* x, t_symbol* /*s*/, long /*argc*/, t_atom* /*argv*/)
{
    object_post(&x->ob.z_ob, "deferred from another thread ran on main thread: %d", systhread_ismainthread());
}

void hostTestFromThread(HostTest* x)
{
    std::thread other(
        [x] { defer(x, reinterpret_cast<method>(hostTestFromThreadDone), nullptr, 0, nullptr); });
    other.join();
}

void hostTestReport(HostTest* x)
{
    object_post(
        &x->ob.z_ob, "performs %lld, frames %lld, off main thread %ld, disabled %ld, dsp %d",
        __atomic_load_n(&x->performs, __ATOMIC_ACQUIRE), __atomic_load_n(&x->frames, __ATOMIC_ACQUIRE),
        __atomic_load_n(&x->performsOffMainThread, __ATOMIC_ACQUIRE), x->ob.z_disabled, sys_getdspstate());
}

void hostTestConsole(HostTest* x)
{
    object_post(&x->ob.z_ob, "a post");
    object_warn(&x->ob.z_ob, "a warning");
    object_error(&x->ob.z_ob, "an error");
    object_bug(&x->ob.z_ob, "a bug");
    object_post(nullptr, "a post without object");
}

void hostTestDictionary(HostTest* x, t_symbol* name)
{
    t_dictionary* d = dictobj_findregistered_retain(name);
    if (d == nullptr) {
        object_error(&x->ob.z_ob, "unable to reference dictionary named %s", name->s_name);
        return;
    }
    long numKeys = 0;
    t_symbol** keys = nullptr;
    dictionary_getkeys_ordered(d, &numKeys, &keys);
    for (long i = 0; i < numKeys; ++i) {
        long ac = 0;
        t_atom* av = nullptr;
        dictionary_getatoms(d, keys[i], &ac, &av);
        sendDump(x, keys[i]->s_name, ac, av);
    }
    dictionary_freekeys(d, numKeys, keys);
    dictobj_release(d);
}

void hostTestOpen(HostTest* x, t_symbol* s, long argc, t_atom* argv);

void hostTestOpenDeferred(HostTest* x, t_symbol* /*s*/, long argc, t_atom* argv)
{
    char name[MAX_PATH_CHARS] = "";
    short path = 0;
    t_fourcc type = 0;
    if (argc > 0) {
        strncpy_zero(name, atom_getsym(argv)->s_name, MAX_FILENAME_CHARS);
        if (locatefile_extended(name, &path, &type, nullptr, 0) != 0) {
            object_error(&x->ob.z_ob, "cannot find %s", atom_getsym(argv)->s_name);
            return;
        }
    } else if (open_dialog(name, &path, &type, nullptr, 0) != 0) {
        object_post(&x->ob.z_ob, "dialog cancelled");
        return;
    }
    char full[MAX_PATH_CHARS];
    if (path_topathname(path, name, full) != 0) {
        object_error(&x->ob.z_ob, "no path for %s", name);
        return;
    }
    t_atom atom;
    atom_setsym(&atom, gensym(std::strrchr(full, '/') == nullptr ? full : std::strrchr(full, '/') + 1));
    sendDump(x, "opened", 1, &atom);
}

void hostTestOpen(HostTest* x, t_symbol* s, long argc, t_atom* argv)
{
    defer_medium(x, reinterpret_cast<method>(hostTestOpenDeferred), s, static_cast<short>(argc), argv);
}

t_max_err hostTestGetValueOf(HostTest* x, long* ac, t_atom** av)
{
    char alloc = 0;
    if (atom_alloc_array(2, ac, av, &alloc) != MAX_ERR_NONE)
        return MAX_ERR_OUT_OF_MEM;
    atom_setfloat(*av, x->level);
    atom_setsym(*av + 1, x->mode);
    *ac = 2;
    return MAX_ERR_NONE;
}

t_max_err hostTestSetValueOf(HostTest* x, long ac, t_atom* av)
{
    if (ac >= 2) {
        object_attr_setvalueof(x, gensym("level"), 1, av);
        object_attr_setvalueof(x, gensym("mode"), 1, av + 1);
    }
    return MAX_ERR_NONE;
}

void hostTestPreset(HostTest* x)
{
    void* binbuf = gensym("_preset")->s_thing;
    if (binbuf == nullptr)
        return;
    t_atom atoms[5];
    atom_setobj(atoms, x);
    atom_setsym(atoms + 1, object_classname(x));
    atom_setsym(atoms + 2, gensym("recallpreset"));
    atom_setfloat(atoms + 3, x->level);
    atom_setsym(atoms + 4, x->mode);
    binbuf_insert(binbuf, nullptr, 5, atoms);
}

void hostTestRecallPreset(HostTest* x, t_symbol* /*s*/, long argc, t_atom* argv)
{
    hostTestSetValueOf(x, argc, argv);
}

void hostTestAssist(HostTest* x, void* /*b*/, long m, long a, char* s)
{
    if (m == ASSIST_INLET)
        std::snprintf(s, ASSIST_MAX_STRING_LEN, "messages");
    else if (a < x->numsignals)
        std::snprintf(s, ASSIST_MAX_STRING_LEN, "signal %ld", a + 1);
    else
        std::snprintf(s, ASSIST_MAX_STRING_LEN, "dump outlet");
}

// Channel c of frame k carries level * (c + 1) / 10 + (k % 64) / 1024.
void hostTestPerform64(HostTest* x, t_object* /*dsp64*/, double** /*ins*/, long /*numins*/, double** outs,
                       long numouts, long sampleframes, long /*flags*/, void* /*userparam*/)
{
    const long long first = __atomic_load_n(&x->frames, __ATOMIC_RELAXED);
    float level = 0;
    __atomic_load(&x->level, &level, __ATOMIC_ACQUIRE);
    for (long c = 0; c < numouts; ++c)
        for (long i = 0; i < sampleframes; ++i)
            outs[c][i] = level * (c + 1) / 10.0 + static_cast<double>((first + i) % 64) / 1024.0;
    __atomic_store_n(&x->frames, first + sampleframes, __ATOMIC_RELEASE);
    __atomic_add_fetch(&x->performs, 1, __ATOMIC_ACQ_REL);
    if (!systhread_ismainthread())
        __atomic_add_fetch(&x->performsOffMainThread, 1, __ATOMIC_ACQ_REL);
}

void hostTestDsp64(HostTest* x, t_object* dsp64, short* count, double samplerate, long maxvectorsize,
                   long /*flags*/)
{
    char counts[256] = "";
    for (long i = 0; i < 1 + x->numsignals; ++i) {
        char one[16];
        std::snprintf(one, sizeof(one), i == 0 ? "%d" : " %d", count[i]);
        strncat_zero(counts, one, sizeof(counts));
    }
    object_post(&x->ob.z_ob, "dsp64 counts %s, sr %g, vector %ld", counts, samplerate, maxvectorsize);
    object_method(dsp64, gensym("dsp_add64"), x, hostTestPerform64, 0, nullptr);
}

t_max_err hostTestSetLevel(HostTest* x, t_object* /*attr*/, long ac, t_atom* av)
{
    if (ac > 0) {
        float level = static_cast<float>(atom_getfloat(av));
        __atomic_store(&x->level, &level, __ATOMIC_RELEASE);
    }
    return MAX_ERR_NONE;
}

void addAttributes(t_class* c)
{
    CLASS_ATTR_LONG(c, "numchannels", 0, HostTest, numchannels);
    CLASS_ATTR_FILTER_CLIP(c, "numchannels", 1, 8);
    CLASS_ATTR_DEFAULT(c, "numchannels", 0, "2");
    CLASS_ATTR_LABEL(c, "numchannels", 0, "number of channels");

    CLASS_ATTR_FLOAT(c, "level", 0, HostTest, level);
    CLASS_ATTR_ACCESSORS(c, "level", nullptr, hostTestSetLevel);
    CLASS_ATTR_FILTER_CLIP(c, "level", 0, 1);
    CLASS_ATTR_DEFAULT(c, "level", 0, "0.5");
    CLASS_ATTR_STYLE_LABEL(c, "level", 0, "text", "output level");
    CLASS_ATTR_CATEGORY(c, "level", 0, "options");

    CLASS_ATTR_DOUBLE(c, "freq", 0, HostTest, freq);
    CLASS_ATTR_MIN(c, "freq", 0, "20");

    CLASS_ATTR_SYM(c, "mode", 0, HostTest, mode);
    CLASS_ATTR_ENUM(c, "mode", 0, "ramp constant");
    CLASS_ATTR_DEFAULT(c, "mode", 0, "ramp");

    CLASS_ATTR_LONG(c, "secret", ATTR_GET_OPAQUE_USER | ATTR_SET_OPAQUE_USER, HostTest, secret);
    CLASS_ATTR_INVISIBLE(c, "secret", 0);

    CLASS_ATTR_LONG_VARSIZE(c, "values", 0, HostTest, values, numvalues, 4);
}

} // namespace

void ext_main(void* /*r*/)
{
    common_symbols_init();
    t_class* c = class_new("hosttest~", reinterpret_cast<method>(hostTestNew),
                           reinterpret_cast<method>(hostTestFree), sizeof(HostTest), nullptr, A_GIMME, 0);
    c->c_flags |= CLASS_FLAG_NEWDICTIONARY;
    class_addmethod(c, reinterpret_cast<method>(hostTestBang), "bang", 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestInt), "int", A_LONG, 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestFloat), "float", A_FLOAT, 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestList), "list", A_GIMME, 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestEcho), "echo", A_GIMME, 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestLater), "later", A_GIMME, 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestFromThread), "fromthread", 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestReport), "report", 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestConsole), "console", 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestDictionary), "dictionary", A_SYM, 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestOpen), "open", A_GIMME, 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestGetValueOf), "getvalueof", A_CANT, 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestSetValueOf), "setvalueof", A_CANT, 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestPreset), "preset", 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestRecallPreset), "recallpreset", A_GIMME, 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestAssist), "assist", A_CANT, 0);
    class_addmethod(c, reinterpret_cast<method>(hostTestDsp64), "dsp64", A_CANT, 0);
    addAttributes(c);
    class_dspinit(c);
    class_register(CLASS_BOX, c);
    hostTestClass = c;
}

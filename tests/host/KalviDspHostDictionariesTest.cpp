#include "KalviDspHostTestSupport.h"

#include "KalviDspHostBoxFactory.h"

#include "ext_dictobj.h"

#include <gtest/gtest.h>

namespace vlk::host::test {
namespace {

std::vector<std::string> keysOf(t_dictionary* d, bool ordered)
{
    long numKeys = 0;
    t_symbol** keys = nullptr;
    (ordered ? dictionary_getkeys_ordered : dictionary_getkeys)(d, &numKeys, &keys);
    std::vector<std::string> names;
    for (long i = 0; i < numKeys; ++i)
        names.push_back(keys[i]->s_name);
    dictionary_freekeys(d, numKeys, keys);
    return names;
}

std::string entry(t_dictionary* d, const char* key)
{
    long ac = 0;
    t_atom* av = nullptr;
    if (dictionary_getatoms(d, gensym(key), &ac, &av) != MAX_ERR_NONE)
        return "missing";
    return text(ac, av);
}

// Counts the frees of its instances.
int freedWatchers = 0;

void freeWatcher(t_object*)
{
    ++freedWatchers;
}

t_object* newWatcher()
{
    static t_class* c =
        class_new("watcher", nullptr, reinterpret_cast<method>(freeWatcher), sizeof(t_object), nullptr, 0);
    return static_cast<t_object*>(object_alloc(c));
}

TEST(HostDictionaries, KeysKeepTheOrderOfTheirFirstAppend)
{
    t_dictionary* d = dictionary_new();
    dictionary_appendlong(d, gensym("zeta"), 1);
    dictionary_appendfloat(d, gensym("alpha"), 2.5);
    dictionary_appendsym(d, gensym("mid"), gensym("x"));
    dictionary_appendlong(d, gensym("zeta"), 3);
    EXPECT_EQ(keysOf(d, true), (std::vector<std::string>{"zeta", "alpha", "mid"}));
    EXPECT_EQ(keysOf(d, false), (std::vector<std::string>{"zeta", "alpha", "mid"}));
    EXPECT_EQ(dictionary_getentrycount(d), 3);
    t_atom_long number = 0;
    EXPECT_EQ(dictionary_getlong(d, gensym("zeta"), &number), MAX_ERR_NONE);
    EXPECT_EQ(number, 3);
    EXPECT_NE(dictionary_getlong(d, gensym("nosuch"), &number), MAX_ERR_NONE);
    dictionary_getdeflong(d, gensym("nosuch"), &number, 42);
    EXPECT_EQ(number, 42);
    EXPECT_EQ(dictionary_hasentry(d, gensym("mid")), 1);
    EXPECT_EQ(dictionary_deleteentry(d, gensym("alpha")), MAX_ERR_NONE);
    EXPECT_EQ(keysOf(d, true), (std::vector<std::string>{"zeta", "mid"}));
    object_free(d);
}

TEST(HostDictionaries, SeveralAtomsBecomeAnAtomArrayAndOneAtomStaysPlain)
{
    t_dictionary* d = dictionary_new();
    std::vector<t_atom> list = atoms("1 two 3.5");
    dictionary_appendatoms(d, gensym("list"), 3, list.data());
    dictionary_appendatom(d, gensym("one"), list.data() + 1);
    EXPECT_TRUE(dictionary_entryisatomarray(d, gensym("list")));
    EXPECT_FALSE(dictionary_entryisatomarray(d, gensym("one")));
    EXPECT_EQ(entry(d, "list"), "1 two 3.5");
    EXPECT_EQ(entry(d, "one"), "two");
    t_atom atom;
    dictionary_getatom(d, gensym("list"), &atom);
    EXPECT_TRUE(atomisatomarray(&atom));
    long ac = 0;
    t_atom* av = nullptr;
    ASSERT_EQ(dictionary_copyatoms(d, gensym("list"), &ac, &av), MAX_ERR_NONE);
    EXPECT_EQ(text(ac, av), "1 two 3.5");
    sysmem_freeptr(av);
    object_free(d);
}

TEST(HostDictionaries, ObjectValuesBelongToTheDictionary)
{
    freedWatchers = 0;
    t_dictionary* d = dictionary_new();
    dictionary_appendobject(d, gensym("a"), newWatcher());
    dictionary_appendobject(d, gensym("b"), newWatcher());
    t_object* kept = nullptr;
    dictionary_getobject(d, gensym("b"), &kept);
    dictionary_chuckentry(d, gensym("b"));
    dictionary_appendobject(d, gensym("a"), newWatcher());
    EXPECT_EQ(freedWatchers, 1);
    object_free(d);
    EXPECT_EQ(freedWatchers, 2);
    object_free(kept);
    EXPECT_EQ(freedWatchers, 3);
}

TEST(HostDictionaries, ClonesCopyNestedValues)
{
    t_dictionary* d = dictionary_new();
    std::vector<t_atom> list = atoms("1 2");
    dictionary_appendatoms(d, gensym("list"), 2, list.data());
    t_dictionary* copy = dictionary_clone(d);
    object_free(d);
    EXPECT_EQ(entry(copy, "list"), "1 2");
    object_free(copy);
}

TEST(HostDictionaryRegistry, OneNameOneDictionaryWithHolders)
{
    t_symbol* name = gensym("registry-test");
    t_dictionary* first = dictionary_new();
    dictionary_appendlong(first, gensym("k"), 1);
    EXPECT_EQ(dictobj_register(first, &name), first);
    EXPECT_EQ(dictobj_namefromptr(first), name);
    freedWatchers = 0;
    t_dictionary* second = dictionary_new();
    dictionary_appendobject(second, gensym("w"), newWatcher());
    EXPECT_EQ(dictobj_register(second, &name), first);
    EXPECT_EQ(freedWatchers, 1);
    t_dictionary* found = dictobj_findregistered_retain(name);
    EXPECT_EQ(found, first);
    t_dictionary* copy = dictobj_findregistered_clone(name);
    EXPECT_NE(copy, first);
    EXPECT_EQ(entry(copy, "k"), "1");
    object_free(copy);
    dictobj_release(found);
    dictobj_release(first);
    EXPECT_EQ(dictobj_findregistered_retain(name), first);
    dictobj_release(first);
    object_free(first);
    EXPECT_EQ(dictobj_findregistered_retain(name), nullptr);
    EXPECT_EQ(dictobj_findregistered_retain(gensym("never-registered")), nullptr);
}

TEST(HostDictionaryRegistry, AMissingNameBecomesUnique)
{
    t_symbol* name = nullptr;
    t_dictionary* d = dictobj_register(dictionary_new(), &name);
    ASSERT_NE(name, nullptr);
    EXPECT_EQ(name->s_name[0], 'u');
    EXPECT_EQ(dictobj_namefromptr(d), name);
    object_free(d);
    EXPECT_EQ(dictobj_namefromptr(d), nullptr);
}

TEST(HostAtomArrays, HoldCopiesAndTellOutOfRange)
{
    std::vector<t_atom> list = atoms("1 2 3");
    t_atomarray* array = atomarray_new(3, list.data());
    list[0].a_w.w_long = 99;
    t_atom atom;
    EXPECT_EQ(atomarray_getindex(array, 0, &atom), MAX_ERR_NONE);
    EXPECT_EQ(atom.a_w.w_long, 1);
    EXPECT_NE(atomarray_getindex(array, 3, &atom), MAX_ERR_NONE);
    atomarray_appendatoms(array, 1, list.data());
    atomarray_chuckindex(array, 1);
    long ac = 0;
    t_atom* av = nullptr;
    atomarray_getatoms(array, &ac, &av);
    EXPECT_EQ(text(ac, av), "1 3 99");
    EXPECT_EQ(atomarray_getsize(array), 3);
    object_free(array);
}

TEST(HostAtomArrays, FreeChildrenOnlyWhenFlagged)
{
    freedWatchers = 0;
    t_atom atom;
    atom_setobj(&atom, newWatcher());
    t_atomarray* borrowing = atomarray_new(1, &atom);
    object_free(borrowing);
    EXPECT_EQ(freedWatchers, 0);
    t_atomarray* owning = atomarray_new(1, &atom);
    atomarray_flags(owning, ATOMARRAY_FLAG_FREECHILDREN);
    object_free(owning);
    EXPECT_EQ(freedWatchers, 1);
}

struct Boxed
{
    t_object ob;
    long numchannels;
    long buffersize;
    long loop;
};

void* boxedNew(t_symbol*, long ac, t_atom* av)
{
    static t_class* c = class_findbyname(CLASS_BOX, gensym("boxed"));
    t_dictionary* d = object_dictionaryarg(ac, av);
    if (d == nullptr)
        return nullptr;
    auto* x = static_cast<Boxed*>(object_alloc(c));
    attr_dictionary_check(x, d);
    attr_dictionary_process(x, d);
    return x;
}

t_class* boxedClass()
{
    static t_class* c = [] {
        t_class* made = class_new("boxed", reinterpret_cast<method>(boxedNew), nullptr, sizeof(Boxed),
                                  nullptr, A_GIMME, 0);
        made->c_flags |= CLASS_FLAG_NEWDICTIONARY;
        CLASS_ATTR_LONG(made, "numchannels", 0, Boxed, numchannels);
        CLASS_ATTR_FILTER_CLIP(made, "numchannels", 1, 250);
        CLASS_ATTR_DEFAULT(made, "numchannels", 0, "1");
        CLASS_ATTR_LONG(made, "buffersize", 0, Boxed, buffersize);
        CLASS_ATTR_DEFAULT(made, "buffersize", 0, "480000");
        CLASS_ATTR_LONG(made, "loop", 0, Boxed, loop);
        class_register(CLASS_BOX, made);
        return made;
    }();
    return c;
}

TEST(HostBoxDictionary, DefaultsOverriddenByTheBoxArguments)
{
    std::vector<t_atom> list = atoms("@buffersize 192000 @extra 1 2");
    t_dictionary* d =
        BoxFactory::makeBoxDictionary(boxedClass(), static_cast<long>(list.size()), list.data());
    EXPECT_EQ(keysOf(d, true), (std::vector<std::string>{"numchannels", "buffersize", "extra"}));
    EXPECT_EQ(entry(d, "numchannels"), "1");
    EXPECT_EQ(entry(d, "buffersize"), "192000");
    EXPECT_EQ(entry(d, "extra"), "1 2");
    object_free(d);
}

TEST(HostBoxDictionary, TheConstructorGetsTheDictionaryAndChecksIt)
{
    boxedClass();
    ConsoleCapture console;
    BoxFactory::Result result = BoxFactory::create(atoms("boxed @numchannels 300 @loop 1 @nosuch 2"));
    ASSERT_NE(result.object, nullptr);
    auto* x = reinterpret_cast<Boxed*>(result.object);
    EXPECT_EQ(x->numchannels, 250);
    EXPECT_EQ(x->buffersize, 480000);
    EXPECT_EQ(x->loop, 1);
    EXPECT_EQ(console.lines(), (std::vector<std::string>{"error: boxed: nosuch is not a valid attribute"}));
    t_object* box = nullptr;
    EXPECT_EQ(object_obex_lookup(x, gensym("#B"), &box), MAX_ERR_NONE);
    EXPECT_NE(box, nullptr);
    EXPECT_EQ(gensym("#B")->s_thing, nullptr);
    object_free(x);
    EXPECT_EQ(object_dictionaryarg(0, nullptr), nullptr);
}

} // namespace
} // namespace vlk::host::test

#include "KalviDspHostTestSupport.h"

#include "KalviDspHostMessageDispatch.h"

#include <gtest/gtest.h>
#include <sstream>

namespace vlk::host::test {
namespace {

std::vector<std::string> calls;

struct Messenger
{
    t_object ob;
};

void record(const std::string& call)
{
    calls.push_back(call);
}

void* messengerNew(t_symbol* s, long ac, t_atom* av)
{
    record("new " + std::string(s->s_name) + " " + text(ac, av));
    return object_alloc(class_findbyname(gensym("box"), gensym("messenger")));
}

void messengerFree(Messenger*)
{
    record("free");
}

void messengerBang(Messenger*)
{
    record("bang");
}

void messengerInt(Messenger*, t_atom_long n)
{
    record("int " + std::to_string(n));
}

void messengerSym(Messenger*, t_symbol* s)
{
    record("sym " + std::string(s->s_name));
}

// Longs, doubles and symbols interleaved, as a typed method may declare them.
void messengerMixed(Messenger*, t_atom_long a, double b, t_symbol* c, double d, t_atom_long e)
{
    std::ostringstream out;
    out << "mixed " << a << " " << b << " " << c->s_name << " " << d << " " << e;
    record(out.str());
}

void messengerDefaults(Messenger*, t_atom_long a, double b, t_symbol* c)
{
    std::ostringstream out;
    out << "defaults " << a << " " << b << " [" << c->s_name << "]";
    record(out.str());
}

void messengerSeven(Messenger*, t_atom_long a, t_atom_long b, t_atom_long c, t_atom_long d, t_atom_long e,
                    t_atom_long f, t_atom_long g)
{
    record("seven " + std::to_string(a + 10 * b + 100 * c + 1000 * d + 10000 * e + 100000 * f + 1000000 * g));
}

void messengerGimme(Messenger*, t_symbol* s, long ac, t_atom* av)
{
    record("gimme " + std::string(s->s_name) + " " + text(ac, av));
}

void messengerAnything(Messenger*, t_symbol* s, long ac, t_atom* av)
{
    record("anything " + std::string(s->s_name) + " " + text(ac, av));
}

void* messengerCant(Messenger*, t_ptr_int a, t_ptr_int b)
{
    return reinterpret_cast<void*>(a * 10 + b);
}

t_max_err messengerBack(Messenger*, t_symbol*, long ac, t_atom*, t_atom* rv)
{
    atom_setlong(rv, ac * 100);
    return MAX_ERR_NONE;
}

t_class* messengerClass()
{
    static t_class* c = [] {
        t_class* made =
            class_new("messenger", reinterpret_cast<method>(messengerNew),
                      reinterpret_cast<method>(messengerFree), sizeof(Messenger), nullptr, A_GIMME, 0);
        class_addmethod(made, reinterpret_cast<method>(messengerBang), "bang", 0);
        class_addmethod(made, reinterpret_cast<method>(messengerInt), "int", A_LONG, 0);
        class_addmethod(made, reinterpret_cast<method>(messengerSym), "sym", A_SYM, 0);
        class_addmethod(made, reinterpret_cast<method>(messengerMixed), "mixed", A_LONG, A_FLOAT, A_SYM,
                        A_FLOAT, A_LONG, 0);
        class_addmethod(made, reinterpret_cast<method>(messengerDefaults), "defaults", A_DEFLONG, A_DEFFLOAT,
                        A_DEFSYM, 0);
        class_addmethod(made, reinterpret_cast<method>(messengerSeven), "seven", A_LONG, A_LONG, A_LONG,
                        A_LONG, A_LONG, A_LONG, A_LONG, 0);
        class_addmethod(made, reinterpret_cast<method>(messengerGimme), "gimme", A_GIMME, 0);
        class_addmethod(made, reinterpret_cast<method>(messengerAnything), "anything", A_GIMME, 0);
        class_addmethod(made, reinterpret_cast<method>(messengerCant), "cant", A_CANT, 0);
        class_addmethod(made, reinterpret_cast<method>(messengerBack), "back", A_GIMMEBACK, 0);
        class_register(CLASS_BOX, made);
        return made;
    }();
    return c;
}

class HostMessages : public ::testing::Test
{
protected:
    void SetUp() override
    {
        messengerClass();
        calls.clear();
        x = static_cast<t_object*>(object_new_typed(CLASS_BOX, gensym("messenger"), 0, nullptr));
        calls.clear();
    }
    void TearDown() override { object_free(x); }

    void send(const std::string& message)
    {
        std::vector<t_atom> list = atoms(message);
        dispatchMessage(x, list[0].a_w.w_sym, static_cast<long>(list.size() - 1), list.data() + 1);
    }

    t_object* x = nullptr;
};

TEST_F(HostMessages, TypedArgumentsArriveConvertedAndInPlace)
{
    send("mixed 1 2 three 4.5 5.9");
    send("defaults");
    send("defaults 3 4");
    send("seven 1 2 3 4 5 6 7");
    send("int 2.9");
    EXPECT_EQ(calls, (std::vector<std::string>{"mixed 1 2 three 4.5 5", "defaults 0 0 []", "defaults 3 4 []",
                                               "seven 7654321", "int 2"}));
}

TEST_F(HostMessages, GimmeGetsTheSelectorAndUnknownSelectorsGoToAnything)
{
    send("gimme 1 b 2.5");
    send("whatever x");
    EXPECT_EQ(calls, (std::vector<std::string>{"gimme gimme 1 b 2.5", "anything whatever x"}));
}

TEST_F(HostMessages, FloatFallsBackOnIntAndBadArgumentsAreRefused)
{
    ConsoleCapture console;
    send("float 3.5");
    send("sym 4");
    EXPECT_EQ(calls, (std::vector<std::string>{"int 3"}));
    EXPECT_EQ(console.lines(),
              (std::vector<std::string>{"error: messenger: bad arguments for message \"sym\""}));
}

TEST_F(HostMessages, UntypedMethodsAreReachableFromCodeOnly)
{
    EXPECT_EQ(reinterpret_cast<t_ptr_int>(object_method(x, gensym("cant"), 4, 2)), 42);
    EXPECT_EQ(object_method(x, gensym("nosuchmethod"), 1), nullptr);
    send("cant 1 2");
    EXPECT_EQ(calls, (std::vector<std::string>{"anything cant 1 2"}));
    EXPECT_EQ(object_getmethod(x, gensym("cant")), reinterpret_cast<method>(messengerCant));
    EXPECT_EQ(zgetfn(x, gensym("nosuchmethod")), nullptr);
}

TEST_F(HostMessages, GimmebackFillsTheResultAtom)
{
    std::vector<t_atom> list = atoms("a b c");
    t_atom result;
    ASSERT_EQ(object_method_typed(x, gensym("back"), 3, list.data(), &result), MAX_ERR_NONE);
    EXPECT_EQ(result.a_type, A_LONG);
    EXPECT_EQ(result.a_w.w_long, 300);
    object_method_typed(x, gensym("bang"), 0, nullptr, &result);
    EXPECT_EQ(result.a_type, A_NOTHING);
}

TEST(HostClasses, RegisteredClassesAreFoundAndCarryTheirFlags)
{
    t_class* c = messengerClass();
    EXPECT_EQ(class_findbyname(CLASS_BOX, gensym("messenger")), c);
    EXPECT_EQ(class_findbyname(CLASS_NOBOX, gensym("messenger")), nullptr);
    EXPECT_TRUE(c->c_flags & CLASS_FLAG_REGISTERED);
    EXPECT_TRUE(c->c_flags & CLASS_FLAG_BOX);
    EXPECT_EQ(class_alias(c, gensym("messenger-alias")), MAX_ERR_NONE);
    EXPECT_EQ(class_findbyname(CLASS_BOX, gensym("messenger-alias")), c);
}

TEST(HostObjects, ConstructorsGetTheirArgumentsAndFreeMethodsRun)
{
    messengerClass();
    calls.clear();
    std::vector<t_atom> list = atoms("1 two");
    auto* x = static_cast<t_object*>(object_new_typed(CLASS_BOX, gensym("messenger"), 2, list.data()));
    ASSERT_NE(x, nullptr);
    EXPECT_EQ(object_classname(x), gensym("messenger"));
    EXPECT_EQ(x->o_magic, MAGIC);
    EXPECT_EQ(reinterpret_cast<t_class*>(x->o_messlist[-1].m_sym), messengerClass());
    EXPECT_EQ(object_free(x), MAX_ERR_NONE);
    EXPECT_EQ(object_free(nullptr), MAX_ERR_NONE);
    EXPECT_EQ(calls, (std::vector<std::string>{"new messenger 1 two", "free"}));
}

TEST(HostObjects, TheExtensionStoreKeepsOneValuePerKey)
{
    messengerClass();
    auto* x = static_cast<t_object*>(object_new_typed(CLASS_BOX, gensym("messenger"), 0, nullptr));
    t_object* found = nullptr;
    EXPECT_NE(object_obex_lookup(x, gensym("dumpout"), &found), MAX_ERR_NONE);
    EXPECT_EQ(found, nullptr);
    void* outlet = outlet_new(x, nullptr);
    void* other = outlet_new(x, nullptr);
    object_obex_store(x, gensym("dumpout"), static_cast<t_object*>(outlet));
    object_obex_store(x, gensym("dumpout"), static_cast<t_object*>(other));
    EXPECT_EQ(object_obex_lookup(x, gensym("dumpout"), &found), MAX_ERR_NONE);
    EXPECT_EQ(found, other);
    t_dictionary* owned = dictionary_new();
    object_obex_storeflags(x, gensym("owned"), reinterpret_cast<t_object*>(owned), OBJ_FLAG_OBJ);
    object_free(x);
}

} // namespace
} // namespace vlk::host::test

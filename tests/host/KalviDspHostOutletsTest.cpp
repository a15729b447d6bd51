#include "KalviDspHostTestSupport.h"

#include "KalviDspHostObject.h"

#include <gtest/gtest.h>

namespace vlk::host::test {
namespace {

struct Sender
{
    t_object ob;
};

std::vector<std::string> received;

void receiverAnything(Sender*, t_symbol* s, long ac, t_atom* av)
{
    received.push_back(std::string(s->s_name) + " " + text(ac, av));
}

void receiverInt(Sender*, t_atom_long n)
{
    received.push_back("int " + std::to_string(n));
}

t_class* senderClass()
{
    static t_class* c = [] {
        t_class* made = class_new("sender", nullptr, nullptr, sizeof(Sender), nullptr, 0);
        class_addmethod(made, reinterpret_cast<method>(receiverAnything), "anything", A_GIMME, 0);
        class_addmethod(made, reinterpret_cast<method>(receiverInt), "int", A_LONG, 0);
        return made;
    }();
    return c;
}

TEST(HostOutlets, TheFirstCreatedIsTheRightmost)
{
    auto* x = static_cast<t_object*>(object_alloc(senderClass()));
    void* dump = outlet_new(x, nullptr);
    void* signal = outlet_new(x, "signal");
    void* left = outlet_new(x, "int");
    std::vector<Outlet*> outlets = outletsLeftToRight(x);
    ASSERT_EQ(outlets.size(), 3u);
    EXPECT_EQ(outlets[0], left);
    EXPECT_EQ(outlets[1], signal);
    EXPECT_EQ(outlets[2], dump);
    EXPECT_TRUE(outlets[1]->isSignal());
    EXPECT_FALSE(outlets[2]->isSignal());
    object_free(x);
}

TEST(HostOutlets, EachKindOfSendArrivesInOrder)
{
    auto* x = static_cast<t_object*>(object_alloc(senderClass()));
    void* outlet = outlet_new(x, nullptr);
    OutletCapture capture(outlet);
    std::vector<t_atom> list = atoms("1 2.5 x");
    EXPECT_NE(outlet_bang(outlet), nullptr);
    outlet_int(outlet, -3);
    outlet_float(outlet, 0.25);
    outlet_list(outlet, nullptr, 3, list.data());
    outlet_anything(outlet, gensym("progress"), 1, list.data() + 1);
    object_obex_store(x, gensym("dumpout"), static_cast<t_object*>(outlet));
    object_obex_dumpout(x, gensym("length"), 1, list.data());
    EXPECT_EQ(capture.messages(), (std::vector<std::string>{"bang", "int -3", "float 0.25", "list 1 2.5 x",
                                                            "progress 2.5", "length 1"}));
    EXPECT_EQ(outlet_bang(nullptr), nullptr);
    object_free(x);
}

TEST(HostOutlets, ConnectedObjectsReceiveMessagesThroughTheirMethods)
{
    auto* from = static_cast<t_object*>(object_alloc(senderClass()));
    auto* to = static_cast<t_object*>(object_alloc(senderClass()));
    void* outlet = outlet_new(from, nullptr);
    static_cast<Outlet*>(outlet)->connectToObject(to);
    received.clear();
    outlet_int(outlet, 7);
    std::vector<t_atom> list = atoms("a 1");
    outlet_anything(outlet, gensym("hello"), 2, list.data());
    EXPECT_EQ(received, (std::vector<std::string>{"int 7", "hello a 1"}));
    object_free(from);
    object_free(to);
}

TEST(HostConsole, LinesNameTheClassUnlessThereIsNoObject)
{
    auto* x = static_cast<t_object*>(object_alloc(senderClass()));
    ConsoleCapture console;
    object_post(x, "Version %s", "4.9.2");
    object_error(x, "Couldnt locate file :  %s", "a.wav");
    object_warn(x, "%d atoms", 3);
    object_bug(x, "exception : %s", "x");
    object_error(nullptr, "couldnt allocate memory");
    post("plain %ld", 5L);
    t_atom atom;
    atom_setfloat(&atom, 2);
    postatom(&atom);
    EXPECT_EQ(console.lines(), (std::vector<std::string>{
                                   "post: sender: Version 4.9.2",
                                   "error: sender: Couldnt locate file :  a.wav",
                                   "warning: sender: 3 atoms",
                                   "bug: sender: exception : x",
                                   "error: couldnt allocate memory",
                                   "post: plain 5",
                                   "post: 2.",
                               }));
    object_free(x);
}

} // namespace
} // namespace vlk::host::test

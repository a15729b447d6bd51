#include "KalviDspHostTestSupport.h"

#include "KalviDspHostMessageDispatch.h"

#include <gtest/gtest.h>

namespace vlk::host::test {
namespace {

struct Attributed
{
    t_object ob;
    char achar;
    long along;
    t_atom_long atomlong;
    t_int32 int32;
    float float32;
    double float64;
    t_symbol* symbol;
    t_atom atom;
    long fixed[3];
    double varsize[4];
    long varsizecount;
    long clipped;
    float custom;
    long hiddenFromUser;
    long sealed;
    void* dumpout;
};

std::vector<std::string> notifications;
std::vector<std::string> setterCalls;

t_max_err customSet(Attributed* x, t_object* attr, long ac, t_atom* av)
{
    setterCalls.push_back(std::string(static_cast<t_attr*>(static_cast<void*>(attr))->name->s_name) + " " +
                          text(ac, av));
    if (ac > 0)
        x->custom = static_cast<float>(atom_getfloat(av) * 2);
    return MAX_ERR_NONE;
}

t_max_err customGet(Attributed* x, t_object*, long* ac, t_atom** av)
{
    char alloc = 0;
    atom_alloc_array(2, ac, av, &alloc);
    atom_setfloat(*av, x->custom);
    atom_setsym(*av + 1, gensym("twice"));
    *ac = 2;
    return MAX_ERR_NONE;
}

t_max_err attributedNotify(Attributed*, t_symbol*, t_symbol* msg, void* sender, void* data)
{
    t_symbol* name = static_cast<t_symbol*>(object_method(data, gensym("getname")));
    notifications.push_back(std::string(msg->s_name) + " " + (name == nullptr ? "?" : name->s_name) +
                            (sender == nullptr ? " without sender" : ""));
    return MAX_ERR_NONE;
}

t_class* attributedClass()
{
    static t_class* c = [] {
        t_class* made = class_new("attributed", nullptr, nullptr, sizeof(Attributed), nullptr, A_GIMME, 0);
        class_addmethod(made, reinterpret_cast<method>(attributedNotify), "notify", A_CANT, 0);
        CLASS_ATTR_CHAR(made, "achar", 0, Attributed, achar);
        CLASS_ATTR_LONG(made, "along", 0, Attributed, along);
        CLASS_ATTR_ATOM_LONG(made, "atomlong", 0, Attributed, atomlong);
        CLASS_ATTR_INT32(made, "int32", 0, Attributed, int32);
        CLASS_ATTR_FLOAT(made, "float32", 0, Attributed, float32);
        CLASS_ATTR_DOUBLE(made, "float64", 0, Attributed, float64);
        CLASS_ATTR_SYM(made, "symbol", 0, Attributed, symbol);
        CLASS_ATTR_ATOM(made, "atom", 0, Attributed, atom);
        CLASS_ATTR_LONG_ARRAY(made, "fixed", 0, Attributed, fixed, 3);
        CLASS_ATTR_DOUBLE_VARSIZE(made, "varsize", 0, Attributed, varsize, varsizecount, 4);
        CLASS_ATTR_LONG(made, "clipped", 0, Attributed, clipped);
        CLASS_ATTR_FILTER_CLIP(made, "clipped", 1, 250);
        CLASS_ATTR_FLOAT(made, "custom", 0, Attributed, custom);
        CLASS_ATTR_ACCESSORS(made, "custom", customGet, customSet);
        CLASS_ATTR_FILTER_MAX(made, "custom", 10);
        CLASS_ATTR_LONG(made, "hiddenfromuser", ATTR_GET_OPAQUE_USER | ATTR_SET_OPAQUE_USER, Attributed,
                        hiddenFromUser);
        CLASS_ATTR_LONG(made, "sealed", ATTR_GET_OPAQUE | ATTR_SET_OPAQUE, Attributed, sealed);
        CLASS_ATTR_DEFAULT(made, "float32", 0, "20");
        CLASS_ATTR_LABEL(made, "float32", 0, "threshold for auto-muting");
        CLASS_ATTR_STYLE(made, "clipped", 0, "onoff");
        CLASS_ATTR_CATEGORY(made, "clipped", 0, "options");
        CLASS_ATTR_MIN(made, "clipped", 0, "1");
        CLASS_ATTR_MAX(made, "clipped", 0, "250");
        CLASS_ATTR_ORDER(made, "clipped", 0, "3");
        CLASS_ATTR_INVISIBLE(made, "sealed", 0);
        CLASS_ATTR_ENUM(made, "symbol", 0, "ramp \"two words\" 3");
        class_attr_addattr_parse(made, "clipped", "units", gensym("symbol"), 0, "sec");
        class_attr_addattr_parse(made, "clipped", "dontreset", gensym("long"), 0, "1");
        class_attr_addattr_parse(made, "clipped", "description", gensym("symbol"), 0, "\"a long text\"");
        return made;
    }();
    return c;
}

class HostAttributes : public ::testing::Test
{
protected:
    void SetUp() override
    {
        x = static_cast<Attributed*>(object_alloc(attributedClass()));
        x->dumpout = outlet_new(x, nullptr);
        object_obex_store(x, gensym("dumpout"), static_cast<t_object*>(x->dumpout));
        notifications.clear();
        setterCalls.clear();
    }
    void TearDown() override { object_free(x); }

    std::string value(const char* name)
    {
        long ac = 0;
        t_atom* av = nullptr;
        t_max_err result = object_attr_getvalueof(x, gensym(name), &ac, &av);
        std::string shown = result == MAX_ERR_NONE ? text(ac, av) : "error " + std::to_string(result);
        sysmem_freeptr(av);
        return shown;
    }

    t_max_err set(const char* name, const std::string& values)
    {
        std::vector<t_atom> list = atoms(values);
        return object_attr_setvalueof(x, gensym(name), static_cast<long>(list.size()), list.data());
    }

    void send(const std::string& message)
    {
        std::vector<t_atom> list = atoms(message);
        dispatchMessage(&x->ob, list[0].a_w.w_sym, static_cast<long>(list.size() - 1), list.data() + 1);
    }

    std::string attributeAttribute(const char* name, const char* sub)
    {
        long ac = 0;
        t_atom* av = nullptr;
        t_max_err result = class_attr_attr_getvalueof(attributedClass(), gensym(name), gensym(sub), &ac, &av);
        std::string shown = result == MAX_ERR_NONE ? text(ac, av) : "error " + std::to_string(result);
        sysmem_freeptr(av);
        return shown;
    }

    Attributed* x = nullptr;
};

TEST_F(HostAttributes, DefaultAccessorsWriteMembersOfEachType)
{
    set("achar", "65");
    set("along", "7.9");
    set("atomlong", "-12");
    set("int32", "70000");
    set("float32", "0.1");
    set("float64", "0.1");
    set("symbol", "hello");
    set("atom", "2.5");
    EXPECT_EQ(x->achar, 'A');
    EXPECT_EQ(x->along, 7);
    EXPECT_EQ(x->atomlong, -12);
    EXPECT_EQ(x->int32, 70000);
    EXPECT_EQ(x->float32, 0.1f);
    EXPECT_EQ(x->float64, 0.1);
    EXPECT_EQ(x->symbol, gensym("hello"));
    EXPECT_EQ(x->atom.a_type, A_FLOAT);
    EXPECT_EQ(value("along"), "7");
    EXPECT_EQ(value("float32"), "0.1");
    EXPECT_EQ(value("symbol"), "hello");
    x->symbol = nullptr;
    EXPECT_EQ(value("symbol"), "\"\"");
}

TEST_F(HostAttributes, ArraysTakeAtMostTheirSizeAndVariableOnesCount)
{
    set("fixed", "1 2 3 4");
    EXPECT_EQ(value("fixed"), "1 2 3");
    set("varsize", "0.5 1.5");
    EXPECT_EQ(x->varsizecount, 2);
    EXPECT_EQ(value("varsize"), "0.5 1.5");
    set("varsize", "1 2 3 4 5 6");
    EXPECT_EQ(x->varsizecount, 4);
}

TEST_F(HostAttributes, ClipFiltersLimitValuesSetAndRead)
{
    set("clipped", "0");
    EXPECT_EQ(x->clipped, 1);
    set("clipped", "300");
    EXPECT_EQ(x->clipped, 250);
    set("clipped", "42.7");
    EXPECT_EQ(x->clipped, 42);
    x->clipped = 1000;
    EXPECT_EQ(value("clipped"), "250");
}

TEST_F(HostAttributes, CustomAccessorsReceiveClippedValuesAndAllocateWhenAsked)
{
    set("custom", "600");
    EXPECT_EQ(setterCalls, (std::vector<std::string>{"custom 10"}));
    EXPECT_EQ(x->custom, 20.0f);
    EXPECT_EQ(value("custom"), "10. twice");
    t_atom storage[2];
    long ac = 2;
    t_atom* av = storage;
    ASSERT_EQ(object_attr_getvalueof(x, gensym("custom"), &ac, &av), MAX_ERR_NONE);
    EXPECT_EQ(av, storage);
    EXPECT_EQ(text(ac, av), "10. twice");
}

TEST_F(HostAttributes, SettersNotifyTheObjectWithTheAttribute)
{
    set("along", "3");
    send("clipped 5");
    object_attr_touch(&x->ob, gensym("symbol"));
    x->along = 9;
    EXPECT_EQ(notifications, (std::vector<std::string>{"attr_modified along", "attr_modified clipped",
                                                       "attr_modified symbol"}));
}

TEST_F(HostAttributes, OpaqueFlagsBarMessagesOrCodeAsTheySay)
{
    ConsoleCapture console;
    OutletCapture dump(x->dumpout);
    EXPECT_EQ(set("hiddenfromuser", "5"), MAX_ERR_NONE);
    EXPECT_EQ(value("hiddenfromuser"), "5");
    send("hiddenfromuser 6");
    send("gethiddenfromuser");
    EXPECT_EQ(x->hiddenFromUser, 5);
    EXPECT_EQ(set("sealed", "5"), MAX_ERR_GENERIC);
    EXPECT_EQ(value("sealed"), "error -1");
    EXPECT_EQ(x->sealed, 0);
    EXPECT_FALSE(object_attr_usercanset(x, gensym("hiddenfromuser")));
    EXPECT_FALSE(object_attr_usercanget(x, gensym("hiddenfromuser")));
    EXPECT_TRUE(object_attr_usercanset(x, gensym("along")));
    send("along 4");
    send("getalong");
    EXPECT_EQ(dump.messages(), (std::vector<std::string>{"along 4"}));
    EXPECT_EQ(console.lines(), (std::vector<std::string>{
                                   "error: attributed: doesn't understand \"hiddenfromuser\"",
                                   "error: attributed: doesn't understand \"gethiddenfromuser\"",
                               }));
}

TEST_F(HostAttributes, AttributeAttributesAreTypedLikeTheirDeclaration)
{
    EXPECT_EQ(attributeAttribute("float32", "default"), "20.");
    EXPECT_EQ(attributeAttribute("float32", "label"), "\"threshold for auto-muting\"");
    EXPECT_EQ(attributeAttribute("clipped", "style"), "onoff");
    EXPECT_EQ(attributeAttribute("clipped", "category"), "options");
    EXPECT_EQ(attributeAttribute("clipped", "min"), "1");
    EXPECT_EQ(attributeAttribute("clipped", "max"), "250");
    EXPECT_EQ(attributeAttribute("clipped", "order"), "3");
    EXPECT_EQ(attributeAttribute("clipped", "units"), "sec");
    EXPECT_EQ(attributeAttribute("clipped", "dontreset"), "1");
    EXPECT_EQ(attributeAttribute("clipped", "description"), "\"a long text\"");
    EXPECT_EQ(attributeAttribute("sealed", "invisible"), "1");
    EXPECT_EQ(attributeAttribute("symbol", "style"), "enum");
    EXPECT_EQ(attributeAttribute("symbol", "enumvals"), "ramp \"two words\" 3");
    EXPECT_EQ(attributeAttribute("along", "label"), "error -1");
}

TEST_F(HostAttributes, AttributeObjectsAnswerTheMessagesOfTheMacros)
{
    t_object* attribute = static_cast<t_object*>(class_attr_get(attributedClass(), gensym("float32")));
    ASSERT_NE(attribute, nullptr);
    EXPECT_EQ(object_attr_get(x, gensym("float32")), attribute);
    EXPECT_EQ(object_method(attribute, gensym("gettype")), gensym("float32"));
    EXPECT_EQ(object_method(attribute, gensym("getname")), gensym("float32"));
    EXPECT_EQ(reinterpret_cast<t_ptr_int>(object_method(attribute, gensym("getflags"))), 0);
    EXPECT_EQ(class_attr_get(attributedClass(), gensym("nosuch")), nullptr);
}

TEST_F(HostAttributes, InstanceAttributesHoldTheirOwnValues)
{
    t_object* attribute = static_cast<t_object*>(class_attr_get(attributedClass(), gensym("along")));
    t_dictionary* methods = dictionary_new();
    EXPECT_EQ(object_attr_getobj(attribute, gensym("methods")), nullptr);
    object_addattr_format(attribute, "methods", gensym("object"), 0, "o", methods);
    EXPECT_EQ(object_attr_getobj(attribute, gensym("methods")), reinterpret_cast<t_object*>(methods));
    object_addattr_parse(&x->ob, "extra", gensym("long"), 0, "12");
    EXPECT_EQ(object_attr_getlong(x, gensym("extra")), 12);
    object_attr_setlong(x, gensym("extra"), 13);
    EXPECT_EQ(value("extra"), "13");
    EXPECT_EQ(object_deleteattr(x, gensym("extra")), MAX_ERR_NONE);
    EXPECT_EQ(value("extra"), "error -1");
    object_deleteattr(attribute, gensym("methods"));
    object_free(methods);
}

TEST_F(HostAttributes, NamesListTheClassAttributesThenTheObjectsOwn)
{
    object_addattr_parse(&x->ob, "zextra", gensym("long"), 0, "1");
    long ac = 0;
    t_symbol** names = nullptr;
    ASSERT_EQ(object_attr_getnames(x, &ac, &names), MAX_ERR_NONE);
    ASSERT_EQ(ac, 15);
    EXPECT_EQ(names[0], gensym("achar"));
    EXPECT_EQ(names[14], gensym("zextra"));
    sysmem_freeptr(names);
}

TEST_F(HostAttributes, BoxArgumentsSetAttributesAfterTheLeadingAtoms)
{
    ConsoleCapture console;
    std::vector<t_atom> list = atoms("foo bar 3.0 @along 6 @fixed 4 5 @nosuch 1 @clipped 900");
    EXPECT_EQ(attr_args_offset(static_cast<short>(list.size()), list.data()), 3);
    attr_args_process(x, static_cast<short>(list.size()), list.data());
    EXPECT_EQ(x->along, 6);
    EXPECT_EQ(x->fixed[0], 4);
    EXPECT_EQ(x->fixed[1], 5);
    EXPECT_EQ(x->clipped, 250);
    EXPECT_EQ(console.lines(), (std::vector<std::string>{"error: attributed: no attribute nosuch"}));
    std::vector<t_atom> none = atoms("1 2");
    EXPECT_EQ(attr_args_offset(2, none.data()), 2);
}

} // namespace
} // namespace vlk::host::test

#include "KalviDspHostTestSupport.h"

#include <gtest/gtest.h>

namespace vlk::host::test {
namespace {

std::string textOf(void* binbuf)
{
    char* text = nullptr;
    t_ptr_size size = 0;
    if (binbuf_totext(binbuf, &text, &size) != 0)
        return "failed";
    std::string result(text, size);
    sysmem_freeptr(text);
    return result;
}

TEST(HostBinbufs, InsertClosesEachMessageAndTurnsHashesIntoDollars)
{
    void* binbuf = binbuf_new();
    std::vector<t_atom> first = atoms("recallpreset 0.5 #1 #10");
    binbuf_insert(binbuf, nullptr, static_cast<short>(first.size()), first.data());
    std::vector<t_atom> part = atoms("a b");
    binbuf_append(binbuf, nullptr, 2, part.data());
    binbuf_vinsert(binbuf, const_cast<char*>("slf"), gensym("c"), 3L, 1.5);
    EXPECT_EQ(textOf(binbuf), "recallpreset 0.5 $1 #10;\na b c 3 1.5;\n");
    object_free(binbuf);
}

TEST(HostBinbufs, GetatomWalksEveryAtomThenStops)
{
    void* binbuf = binbuf_new();
    std::vector<t_atom> message = atoms("x 1");
    binbuf_insert(binbuf, nullptr, 2, message.data());
    long p1 = 0;
    long p2 = 0;
    t_atom atom;
    std::vector<short> types;
    while (binbuf_getatom(binbuf, &p1, &p2, &atom) == 0)
        types.push_back(atom.a_type);
    EXPECT_EQ(types, (std::vector<short>{A_SYM, A_LONG, A_SEMI}));
    object_free(binbuf);
}

} // namespace
} // namespace vlk::host::test

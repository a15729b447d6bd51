#include "KalviDspHostTestSupport.h"

#include <cstring>
#include <gtest/gtest.h>

namespace vlk::host::test {
namespace {

TEST(HostAtoms, GettersConvertNumbersAndNeverGiveANullSymbol)
{
    t_atom atom;
    atom_setfloat(&atom, 3.7);
    EXPECT_EQ(atom_getlong(&atom), 3);
    atom_setfloat(&atom, -3.7);
    EXPECT_EQ(atom_getlong(&atom), -3);
    EXPECT_EQ(atom_getsym(&atom), gensym(""));
    EXPECT_EQ(atom_getobj(&atom), nullptr);
    atom_setlong(&atom, 7);
    EXPECT_DOUBLE_EQ(atom_getfloat(&atom), 7.0);
    atom_setsym(&atom, gensym("12"));
    EXPECT_EQ(atom_getlong(&atom), 12);
    atom_setsym(&atom, gensym("twelve"));
    EXPECT_EQ(atom_getlong(&atom), 0);
    EXPECT_EQ(atom_getsym(nullptr), gensym(""));
}

TEST(HostAtoms, CharFixClampsLongsAndScalesFloats)
{
    t_atom atom;
    atom_setlong(&atom, 300);
    EXPECT_EQ(atom_getcharfix(&atom), 255);
    atom_setlong(&atom, -4);
    EXPECT_EQ(atom_getcharfix(&atom), 0);
    atom_setfloat(&atom, 0.5);
    EXPECT_EQ(atom_getcharfix(&atom), 127);
}

TEST(HostAtoms, ArgumentGettersLeaveTheValueAloneOutOfRange)
{
    std::vector<t_atom> list = atoms("4 2.5 name");
    t_atom_long value = 99;
    EXPECT_NE(atom_arg_getlong(&value, 3, 3, list.data()), MAX_ERR_NONE);
    EXPECT_EQ(value, 99);
    EXPECT_EQ(atom_arg_getlong(&value, 1, 3, list.data()), MAX_ERR_NONE);
    EXPECT_EQ(value, 2);
    t_symbol* name = nullptr;
    EXPECT_EQ(atom_arg_getsym(&name, 2, 3, list.data()), MAX_ERR_NONE);
    EXPECT_EQ(name, gensym("name"));
}

TEST(HostAtomParsing, NumbersSymbolsAndQuotes)
{
    long ac = 0;
    t_atom* av = nullptr;
    ASSERT_EQ(atom_setparse(&ac, &av, "foo bar 1 2 3.0 \"a b\" -5 1e3 .5 1. - +"), MAX_ERR_NONE);
    ASSERT_EQ(ac, 12);
    const short expected[] = {A_SYM,  A_SYM,   A_LONG,  A_LONG,  A_FLOAT, A_SYM,
                              A_LONG, A_FLOAT, A_FLOAT, A_FLOAT, A_SYM,   A_SYM};
    for (long i = 0; i < ac; ++i)
        EXPECT_EQ(av[i].a_type, expected[i]) << "atom " << i;
    EXPECT_EQ(av[5].a_w.w_sym, gensym("a b"));
    EXPECT_EQ(av[6].a_w.w_long, -5);
    EXPECT_DOUBLE_EQ(av[7].a_w.w_float, 1000.0);
    sysmem_freeptr(av);
}

TEST(HostAtomParsing, CallerStorageIsFilledWithoutAllocation)
{
    t_atom storage[2];
    long ac = 2;
    t_atom* av = storage;
    ASSERT_EQ(atom_setparse(&ac, &av, "1 2 3"), MAX_ERR_NONE);
    EXPECT_EQ(av, storage);
    EXPECT_EQ(ac, 2);
    EXPECT_EQ(storage[1].a_w.w_long, 2);
}

TEST(HostAtomText, FloatsKeepTheirPointAndLoseTrailingZeros)
{
    EXPECT_EQ(text(1, atoms("2.").data()), "2.");
    EXPECT_EQ(text(1, atoms("0.5").data()), "0.5");
    EXPECT_EQ(text(1, atoms("-0.125").data()), "-0.125");
    EXPECT_EQ(text(1, atoms("1.23456789").data()), "1.234568");
    EXPECT_EQ(text(3, atoms("50 \"a b\" x").data()), "50 \"a b\" x");
    t_atom empty;
    atom_setsym(&empty, gensym(""));
    EXPECT_EQ(text(1, &empty), "\"\"");
}

TEST(HostAtomText, FormatAndGettextRoundTrip)
{
    long ac = 0;
    t_atom* av = nullptr;
    ASSERT_EQ(atom_setformat(&ac, &av, "lfs", static_cast<t_atom_long>(3), 0.25, gensym("x")), MAX_ERR_NONE);
    long size = 0;
    char* buffer = nullptr;
    ASSERT_EQ(atom_gettext(ac, av, &size, &buffer, 0), MAX_ERR_NONE);
    EXPECT_STREQ(buffer, "3 0.25 x");
    sysmem_freeptr(buffer);
    sysmem_freeptr(av);
}

TEST(HostMemory, BlocksKnowTheirSizeAndClearedResizesZeroTheTail)
{
    char* block = sysmem_newptr(10);
    EXPECT_EQ(sysmem_ptrsize(block), 10u);
    std::memset(block, 7, 10);
    block = sysmem_resizeptrclear(block, 20);
    EXPECT_EQ(sysmem_ptrsize(block), 20u);
    EXPECT_EQ(block[9], 7);
    EXPECT_EQ(block[19], 0);
    sysmem_freeptr(block);
    sysmem_freeptr(nullptr);
}

TEST(HostStrings, BoundedCopiesAlwaysTerminate)
{
    char buffer[5];
    EXPECT_STREQ(strncpy_zero(buffer, "abcdefgh", sizeof(buffer)), "abcd");
    strncpy_zero(buffer, "ab", sizeof(buffer));
    EXPECT_STREQ(strncat_zero(buffer, "cdef", sizeof(buffer)), "abcd");
    snprintf_zero(buffer, sizeof(buffer), "%d", 123456);
    EXPECT_STREQ(buffer, "1234");
}

} // namespace
} // namespace vlk::host::test

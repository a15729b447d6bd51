#include "KalviDspHostTestSupport.h"

#include "z_dsp.h"

#include <cstddef>
#include <gtest/gtest.h>

namespace vlk::host::test {
namespace {

// Object code reads these structures directly, so they must lie as the SDK lays them out on LP64.
TEST(HostLayout, StructuresMatchTheSdkOn64BitTargets)
{
    EXPECT_EQ(sizeof(t_atom), 16u);
    EXPECT_EQ(offsetof(t_atom, a_w), 8u);
    EXPECT_EQ(sizeof(t_object), 32u);
    EXPECT_EQ(sizeof(t_pxobject), 64u);
    EXPECT_EQ(offsetof(t_pxobject, z_in), 32u);
    EXPECT_EQ(offsetof(t_pxobject, z_proxy), 40u);
    EXPECT_EQ(offsetof(t_pxobject, z_disabled), 48u);
    EXPECT_EQ(offsetof(t_pxobject, z_count), 56u);
    EXPECT_EQ(offsetof(t_pxobject, z_misc), 58u);
    EXPECT_EQ(sizeof(t_atom_long), 8u);
    EXPECT_EQ(sizeof(t_atom_float), 8u);
    EXPECT_EQ(offsetof(t_symbol, s_thing), 8u);
}

TEST(HostLayout, ConstantsHaveTheSdkValues)
{
    EXPECT_EQ(CLASS_FLAG_NEWDICTIONARY, 4);
    EXPECT_EQ(ATTR_GET_OPAQUE_USER | ATTR_SET_OPAQUE_USER, 768);
    EXPECT_EQ(ATTR_SET_DEFER_LOW, 0x4000000);
    EXPECT_EQ(Z_NO_INPLACE, 1);
    EXPECT_EQ(A_GIMME, 8);
    EXPECT_EQ(A_CANT, 9);
    EXPECT_EQ(A_DEFER_LOW, 0x43);
    EXPECT_EQ(MAX_ERR_GENERIC, -1);
    EXPECT_EQ(MAX_PATH_CHARS, 2048);
    EXPECT_EQ(ASSIST_OUTLET, 2);
}

} // namespace
} // namespace vlk::host::test

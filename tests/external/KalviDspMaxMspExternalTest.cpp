#include "external/KalviDspMaxMspExternal.h"
#include "external/KalviDspMap.h"
#include "external/KalviDspMaxMspExternalDocumentation.h"

#include <gtest/gtest.h>

namespace vlk::external::test {
namespace {

using Velur::MaxMspExternal;

TEST(CatalogueMap, KeysAreFoundByScanAndNewKeysAppendADefault)
{
    Velur::Map<int> exact(false);
    exact["b"] = 2;
    exact["a"] = 1;
    EXPECT_EQ(exact.IndexOf("a"), 1);
    EXPECT_EQ(exact.IndexOf("A"), -1);
    EXPECT_FALSE(exact.ContainsKey("B"));
    EXPECT_EQ(exact["c"], 0);
    EXPECT_EQ(exact.size(), 3u);
    exact["a"] = 5;
    EXPECT_EQ(exact.size(), 3u);
    EXPECT_EQ(exact.getValue(1), 5);

    Velur::Map<int> folded(true);
    folded["Key"] = 4;
    EXPECT_TRUE(folded.ContainsKey("kEY"));
    folded["KEY"] = 6;
    EXPECT_EQ(folded.size(), 1u);
    EXPECT_EQ(folded.getValue(0), 6);
}

TEST(CatalogueTexts, TheObjectsRowIsFoundWhateverTheCase)
{
    EXPECT_EQ(MaxMspExternal::GetExternalDigest("VELUR.SFPLAY~"), "(Multichannel) Sound file player.");
    EXPECT_EQ(MaxMspExternal::GetExternalSeeAlso("velur.sfplay~"),
              "sfplay~, velur.sfrecord~, velur.sfinfo, velur.index~");
    const String description = MaxMspExternal::GetExternalDescription("Velur.Sfplay~");
    EXPECT_EQ(description.rfind("velur.sfplay~ plays AIFF and WAVE files from disk. ", 0), 0u);
    EXPECT_EQ(description.back(), ' ');
    EXPECT_EQ(static_cast<std::uint32_t>(MaxMspExternal::GetExternalType("velur.sfplay~")), 112u);
}

TEST(CatalogueTexts, AnUnknownNameHasNoTexts)
{
    EXPECT_EQ(MaxMspExternal::GetExternalDigest("velur.nothing~"), "");
    EXPECT_EQ(MaxMspExternal::GetExternalDescription("velur.nothing~"), "");
    EXPECT_EQ(MaxMspExternal::GetExternalSeeAlso(""), "");
    EXPECT_EQ(static_cast<std::uint32_t>(MaxMspExternal::GetExternalType("velur.nothing~")), 0u);
    MaxMspExternal::BuildExternalMap();
    EXPECT_EQ(MaxMspExternal::GetExternalDigest("velur.sfplay~"), "(Multichannel) Sound file player.");
}

TEST(CatalogueFactory, OnlyDocumentedIdsMakeAnObject)
{
    const auto make = [](std::uint32_t value) {
        const auto type = static_cast<MaxMspExternal::Type>(value);
        return MaxMspExternal::CreateDocumentation(&type);
    };
    const auto documentation = make(112);
    ASSERT_NE(documentation, nullptr);
    EXPECT_EQ(documentation->GetType(), MaxMspExternal::Type::velurSfplayTilda);
    EXPECT_EQ(make(152), nullptr);
    EXPECT_EQ(make(0xFFFFFFFF), nullptr);
    EXPECT_EQ(make(47), nullptr);
    EXPECT_EQ(MaxMspExternal::CreateDocumentation(nullptr), nullptr);
}

TEST(CatalogueMessages, DescriptionsAreFoundWhateverTheCase)
{
    const String info = MaxMspExternal::GetMethodDocumentation("INFO");
    EXPECT_EQ(info, "posts information about the current state of the object in the Max window.");
    EXPECT_EQ(MaxMspExternal::GetMethodDocumentation("/info"), info);
    EXPECT_EQ(MaxMspExternal::GetMethodDocumentation("loudspeakers"),
              "the <m> loudspkeakers </m> message is an alias to the <m> speakers </m> message.");
    EXPECT_EQ(MaxMspExternal::GetMethodDocumentation("frobnicate"), "");
}

} // namespace
} // namespace vlk::external::test

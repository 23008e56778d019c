#include "tests/support/FailingAllocation.h"
#include "tests/support/ServedSets.h"

#include <vynulib/CharSetConverterManager.h>
#include <vynulib/VynCharSetConverterUTF8.h>

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <utility>

namespace {

// Tells when it is destroyed.
class CountedConverter : public VynCharSetConverterUTF8 {
public:
    explicit CountedConverter(int& destroyed) : VynCharSetConverterUTF8(VYNCS_UTF8), m_destroyed(destroyed) {}
    ~CountedConverter() override { ++m_destroyed; }

private:
    int& m_destroyed;
};

TEST(Registry, NamesEverySetBothWaysInEveryThread) {
    EXPECT_EQ(std::size(namedSets), 54U);
    auto const nameAll = [] {
        for (std::size_t i = 0; i < std::size(namedSets); ++i) {
            EXPECT_STREQ(VynCharSetToString(namedSets[i]), setNames[i]);
            EXPECT_EQ(VynCharSetFromString(setNames[i]), namedSets[i]) << setNames[i];
        }
    };
    { std::jthread const first(nameAll), second(nameAll); }
    for (int const number : {0, -1, 28602, 50226})
        EXPECT_STREQ(VynCharSetToString(VynCharSet(number)), "VYNCS_OS_DEFAULT") << number;
    for (char const* name : {static_cast<char const*>(nullptr), "", "vyncs_utf8", "VYNCS_UTF8 ", " VYNCS_UTF8",
                             "VYNCS_UTF", "ISO88591", "\xC3\xA9"})
        EXPECT_EQ(VynCharSetFromString(name), VYNCS_OS_DEFAULT) << name;
}

TEST(Registry, ServesFortyOneSetsAndUtf8ForAllElse) {
    VynCharSetConverter* const utf8 = VynCharSetConverter::getConverter(VYNCS_UTF8);
    std::set<VynCharSetConverter*> converters;
    std::set<int> onUtf8;
    for (VynCharSet const cs : namedSets) {
        VynCharSetConverter* const converter = VynCharSetConverter::getConverter(cs);
        converters.insert(converter);
        if (converter == utf8 && cs != VYNCS_OS_DEFAULT)
            onUtf8.insert(cs);
    }
    EXPECT_EQ(converters.size(), 41U);
    EXPECT_EQ(onUtf8, (std::set<int>{1201, 12001, 50220, 50221, 50222, 50223, 50224, 50225, 50227, 50228, 50229, 51950,
                                     65001}));
    for (int const number : {0, -1, 28602})
        EXPECT_EQ(VynCharSetConverter::getConverter(VynCharSet(number)), utf8) << number;
}

TEST(Registry, KeepsTheFirstRegistration) {
    int destroyed = 0;
    {
        CountedConverter refused(destroyed);
        CountedConverter lent(destroyed);
        auto* const given = new CountedConverter(destroyed);
        CharSetConverterManager registry;
        VynCharSetConverter* const utf8 = registry.getConverter(VYNCS_UTF8);
        registry.insert(VYNCS_UTF8, &refused, false);
        EXPECT_EQ(registry.getConverter(VYNCS_UTF8), utf8);
        registry.insert(VYNCS_EUC_TW, &lent, true);
        registry.insert(VYNCS_ISO_2022KR, given, false);
        EXPECT_EQ(registry.getConverter(VYNCS_EUC_TW), &lent);
        EXPECT_EQ(registry.getConverter(VYNCS_ISO_2022KR), given);

        registry.insertCharSetMap(VYNCS_UTF8, VynUString("VYNCS_KOI8R", VYNCS_UTF8));
        EXPECT_EQ(registry.charSetFromString("VYNCS_KOI8R"), VYNCS_KOI8R);
        registry.insertCharSetMap(VYNCS_UTF8, VynUString("OTHER", VYNCS_UTF8));
        EXPECT_EQ(registry.charSetFromString("OTHER"), VYNCS_UTF8);
        EXPECT_STREQ(registry.charSetToString(VYNCS_UTF8), "VYNCS_UTF8");
    }
    EXPECT_EQ(destroyed, 3); // the given one by the registry, each of the other two by its own scope
}

// So that threads which look it up only read.
TEST(Registry, RendersANameBeforeItCanBeFound) {
    CharSetConverterManager registry;
    registry.insertCharSetMap(VynCharSet(28602), VynUString("TWELVE", VYNCS_UTF8));
    char const* name = nullptr;
    allocationsLeft = 0;
    EXPECT_NO_THROW(name = registry.charSetToString(VynCharSet(28602)));
    EXPECT_THROW(CharSetConverterManager(), std::bad_alloc);
    allocationsLeft = unlimitedAllocations;
    EXPECT_STREQ(name, "TWELVE");
}

} // namespace

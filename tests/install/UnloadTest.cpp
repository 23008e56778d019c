#include "tests/support/FailingAllocation.h"

#include <vynulib/VynCharSet.h>

#include <dlfcn.h>
#include <malloc.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

class CharSetConverterManager;
class VynCharSetConverter;

namespace {

/// The library, for as long as the object lives. It gets the rest of `allocations` while it is loaded.
class Loaded {
public:
    explicit Loaded(unsigned allocations = unlimitedAllocations) {
        allocationsLeft = allocations;
        m_library = dlopen(VYNULIB_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        m_wasEnough = allocationsLeft != 0;
        allocationsLeft = unlimitedAllocations;
        EXPECT_NE(m_library, nullptr) << dlerror();
    }
    Loaded(Loaded const&) = delete;
    Loaded& operator=(Loaded const&) = delete;
    ~Loaded() {
        EXPECT_EQ(dlclose(m_library), 0) << dlerror();
        EXPECT_EQ(dlopen(VYNULIB_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
    }

    bool wasEnough() const { return m_wasEnough; }

    /// What has this name and, a function, this type.
    template <class Symbol>
    Symbol* find(char const* name) const {
        void* const symbol = dlsym(m_library, name);
        EXPECT_NE(symbol, nullptr) << dlerror();
        return reinterpret_cast<Symbol*>(symbol);
    }

    unsigned long convert(unsigned char (&dst)[16], char const* src, VynCharSet cs) const {
        return find<decltype(LocalToUTF8)>("_Z11LocalToUTF8PhPKcm10VynCharSet")(dst, src, sizeof dst, cs);
    }

private:
    void* m_library;
    bool m_wasEnough;
};

/// Has the library loaded, used and unloaded, again and again.
template <class Use>
void expectNothingIsLeft(int rounds, Use use) {
    int const settled = rounds / 3; // the loader itself keeps a little memory
    std::size_t before = 0;
    for (int round = 0; round < rounds && !testing::Test::HasFailure(); ++round) {
        if (round == settled)
            before = mallinfo2().uordblks;
        use();
    }
    EXPECT_LT(mallinfo2().uordblks, before + 10'000) << "a few bytes a round are the loader's, a table is kilobytes";
}

TEST(Unload, UsedLibraryLeavesTheProcessWithAllItsMemory) {
    // One set of each kind of tables that are built on first use; each reads the bytes B0 A1.
    constexpr VynCharSet sets[] = {VYNCS_KOI8R,  VYNCS_WCP932, VYNCS_WCP936, VYNCS_SJIS0213,
                                   VYNCS_EUC_JP, VYNCS_EUC_CN, VYNCS_GB18030};
    expectNothingIsLeft(1000, [&] {
        Loaded const library;
        for (VynCharSet const set : sets) {
            unsigned char text[16];
            EXPECT_NE(library.convert(text, "\xB0\xA1", set), 0u) << set;
        }
    });
}

// Sets and names are there whatever the registry could keep of them, and the default set is that of the locale or 28591.
TEST(Load, NeedsNoMemoryToSucceed) {
    constexpr std::pair<VynCharSet, char const*> namedSets[] = {
#define ROW(name, number) {name, #name},
        VYN_CHARSETS(ROW)
#undef ROW
    };
    setenv("LANG", "ja_JP.eucJP", 1);
    std::size_t const before = mallinfo2().uordblks;
    unsigned allocations = 0;
    std::string hiragana;
    for (bool wasEnough = false; !wasEnough && !HasFailure(); ++allocations) {
        SCOPED_TRACE("with " + std::to_string(allocations) + " allocations");
        Loaded const library(allocations);
        wasEnough = library.wasEnough();
        auto* const registry = *library.find<CharSetConverterManager*>("g_oCnvtMgr");
        auto* const inRegistry = library.find<VynCharSetConverter*(CharSetConverterManager*, VynCharSet)>(
            "_ZN23CharSetConverterManager12getConverterE10VynCharSet");
        auto* const converterOf =
            library.find<VynCharSetConverter*(VynCharSet)>("_ZN19VynCharSetConverter12getConverterE10VynCharSet");
        auto* const nameOf = library.find<decltype(VynCharSetToString)>("_Z18VynCharSetToString10VynCharSet");
        auto* const setOf = library.find<decltype(VynCharSetFromString)>("_Z20VynCharSetFromStringPKc");
        for (auto const& [cs, name] : namedSets) {
            EXPECT_EQ(inRegistry(registry, cs), converterOf(cs)) << name;
            EXPECT_STREQ(nameOf(cs), name);
            EXPECT_EQ(setOf(name), cs) << name;
        }
        unsigned char text[16];
        library.convert(text, "\xA4\xA2", VYNCS_OS_DEFAULT);
        hiragana = reinterpret_cast<char*>(text);
        EXPECT_TRUE(hiragana == "\u3042" || (hiragana == "\u00A4\u00A2" && !wasEnough)) << hiragana;
    }
    EXPECT_GT(allocations, 100U);
    EXPECT_EQ(hiragana, "\u3042");
    EXPECT_LT(mallinfo2().uordblks, before + 50'000) << "some are the loader's, a registry left behind is as much";
}

TEST(Unload, StaticObjectsOfOthersMayConvert) {
    expectNothingIsLeft(100, [] {
        void* const user = dlopen(STATIC_USER, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(user, nullptr) << dlerror();
        ASSERT_EQ(dlclose(user), 0) << dlerror();
        EXPECT_EQ(dlopen(VYNULIB_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
    });
    EXPECT_NE(dlopen(STATIC_USER, RTLD_NOW | RTLD_LOCAL), nullptr); // and where the process ends
}

} // namespace

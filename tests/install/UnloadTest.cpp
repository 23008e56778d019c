#include <dlfcn.h>
#include <malloc.h>

#include <gtest/gtest.h>

namespace {

using LocalToUTF8 = unsigned long (*)(unsigned char* dst, char const* src, unsigned long dstSize, int cs);

/// One set of each kind of tables that are built on first use; each reads the bytes B0 A1.
constexpr int sets[] = {20866, 932, 936, 30933, 51932, 51936, 54936};

/// Loads the library, uses it and unloads it, again and again.
template <class Use>
void expectNothingIsLeft(char const* path, int rounds, Use use) {
    int const settled = rounds / 3; // the loader itself keeps a little memory
    std::size_t before = 0;
    for (int round = 0; round < rounds; ++round) {
        if (round == settled)
            before = mallinfo2().uordblks;
        void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << dlerror();
        use(library);
        ASSERT_EQ(dlclose(library), 0) << dlerror();
        ASSERT_EQ(dlopen(VYNULIB_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded in round " << round;
    }
    EXPECT_LT(mallinfo2().uordblks, before + 10'000) << "a few bytes a round are the loader's, a table is kilobytes";
}

TEST(Unload, UsedLibraryLeavesTheProcessWithAllItsMemory) {
    expectNothingIsLeft(VYNULIB_LIBRARY, 1000, [](void* library) {
        auto const convert = reinterpret_cast<LocalToUTF8>(dlsym(library, "_Z11LocalToUTF8PhPKcm10VynCharSet"));
        ASSERT_NE(convert, nullptr) << dlerror();
        for (int const set : sets) {
            unsigned char text[16];
            EXPECT_NE(convert(text, "\xB0\xA1", sizeof text, set), 0u) << set;
        }
    });
}

TEST(Unload, StaticObjectsOfOthersMayConvert) {
    expectNothingIsLeft(STATIC_USER, 100, [](void*) {});
    EXPECT_NE(dlopen(STATIC_USER, RTLD_NOW | RTLD_LOCAL), nullptr); // and where the process ends
}

} // namespace

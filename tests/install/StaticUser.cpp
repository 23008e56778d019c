// A library that converts in the constructor and in the destructor of a static object.

#include <vynulib/VynUString.h>

#include <cstdlib>
#include <string_view>

namespace {

struct StaticUser {
    StaticUser() { use(); }
    ~StaticUser() { use(); }

    static void use() {
        VynUString text("\x82\xA0", VYNCS_WCP932);
        if (std::string_view(text.c_str(VYNCS_EUC_JP)) != "\xA4\xA2" ||
            VynCharSetFromString("VYNCS_BIG5") != VYNCS_BIG5)
            std::abort();
    }
} staticUser;

} // namespace

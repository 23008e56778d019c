#include <vynulib/CharSetConverterManager.h>
#include <vynulib/Transcoding.h>

#include <cstdio>
#include <stdexcept>

namespace {

std::string_view nameOf(VynCharSet cs) {
    try {
        return vynulib::preferredName(cs);
    } catch (std::invalid_argument const&) {
        return "not served";
    }
}

} // namespace

// Prints the set that this process detects. Fails where another converter than that of the set serves the default one,
// or where the two differ in name.
int main() {
    VynCharSet const detected = g_oCnvtMgr.getDefaultCharSet();
    std::printf("%d", detected);
    if (nameOf(detected) != nameOf(VYNCS_OS_DEFAULT))
        return 1;
    return g_oCnvtMgr.getConverter(detected) == VynCharSetConverter::getConverter(VYNCS_OS_DEFAULT) ? 0 : 1;
}

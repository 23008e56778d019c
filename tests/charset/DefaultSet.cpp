#include <vynulib/CharSetConverterManager.h>

#include <cstdio>

// Prints the set that this process detects. Fails where another converter than that of the set serves the default one.
int main() {
    VynCharSet const detected = g_oCnvtMgr.getDefaultCharSet();
    std::printf("%d", detected);
    return g_oCnvtMgr.getConverter(detected) == VynCharSetConverter::getConverter(VYNCS_OS_DEFAULT) ? 0 : 1;
}

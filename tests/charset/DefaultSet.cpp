#include <vynulib/CharSetConverterManager.h>

#include <cstdio>

// Prints the set that this process detects, and the served set whose converter answers for the default one.
int main() {
    int served = 0;
    for (VynCharSet const cs : {
#define ROW(name, number) name,
             VYN_CHARSETS(ROW)
#undef ROW
         })
        if (cs != VYNCS_OS_DEFAULT &&
            g_oCnvtMgr.getConverter(cs) == VynCharSetConverter::getConverter(VYNCS_OS_DEFAULT) &&
            (served == 0 || cs == VYNCS_UTF8))
            served = cs;
    std::printf("%d %d", g_oCnvtMgr.getDefaultCharSet(), served);
    return 0;
}

#include "charset/ServedSets.h"

#include "charset/CharSetNames.h"

#include <vynulib/CharSetConverterManager.h>

#include <stdexcept>
#include <string>

VynCharSet vyn::resolved(VynCharSet cs) {
    VynCharSet const set = cs == VYNCS_OS_DEFAULT ? g_oCnvtMgr.m_eDefaultCharSet : cs;
    if (!isServed(set))
        throw std::invalid_argument("no conversion for the character set " + std::to_string(set));
    return set;
}

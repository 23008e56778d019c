#include <vynulib/VynUStringList.h>

VynUStringList VynUString::split(unsigned short separator) const {
    return VynUStringList(*this, separator);
}

VynUStringList VynUString::split(VynUString const& separator) const {
    return VynUStringList(*this, separator);
}

VynUStringList VynUString::split(char separator, VynCharSet cs) const {
    return VynUStringList(*this, VynUString(separator, cs));
}

#include <vynulib/VynCharSetConverter.h>

VynCharSetConverter::~VynCharSetConverter() = default;

unsigned long VynCharSetConverter::fromUTF8(void*, unsigned char const*, unsigned long, ILLCHAR_OPTYPE, bool*) {
    return 0;
}

unsigned long VynCharSetConverter::toUTF8(unsigned char*, void const*, unsigned long, ILLCHAR_OPTYPE, bool*) {
    return 0;
}

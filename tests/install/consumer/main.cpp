#include <vynulib/vynulib.h>

#include <cstring>
#include <string>

/// What a program of a user does: one call of a free function, one string, one converter. The library is that of the headers.
int main() {
    std::string const version = std::to_string(VYNULIB_VERSION_MAJOR) + '.' + std::to_string(VYNULIB_VERSION_MINOR) +
                                '.' + std::to_string(VYNULIB_VERSION_PATCH);
    if (vynulib::version() != version)
        return 1;

    char local[16];
    unsigned long const bytes =
        UTF8ToLocal(local, reinterpret_cast<unsigned char const*>("caf\xC3\xA9"), sizeof local, VYNCS_WCP1252);
    VynUString const word(local, VYNCS_WCP1252);
    bool const converterFits =
        VynCharSetConverter::getConverter(VYNCS_WCP1252)->getNumBytes(word.data(), VynUString::npos) == bytes;
    return bytes == 4 && std::strcmp(local, "caf\xE9") == 0 && word.length() == 4 && converterFits ? 0 : 1;
}

// Converts a text in KOI8-R to UTF-8.
#include <vynulib/VynCharSet.h>

#include <cstdio>

int main() {
    char const koi8r[] = "\xF0\xD2\xC9\xD7\xC5\xD4, \xED\xC9\xD2!"; // "Привет, Мир!"
    unsigned char utf8[64];
    unsigned long const bytes = LocalToUTF8(utf8, koi8r, sizeof utf8, VYNCS_KOI8R);
    std::printf("%s (%lu bytes)\n", reinterpret_cast<char const*>(utf8), bytes);
}

// Names of files in the local set: what it can't hold is spelled "U+XXXX", and read back. Run it with LANG=C.ISO-8859-1.
#include <vynulib/Transcoding.h>

#include <cstdio>

namespace {

void show(char const* name) {
    char local[256];
    unsigned char back[256];
    // [names]
    bool const stored = UTF8ToLocalPath(local, reinterpret_cast<unsigned char const*>(name), sizeof local) != 0;
    bool const read = stored && LocalPathToUTF8(back, local, sizeof back) != 0;
    // [names]
    if (read) // what is shown of the local name is its bytes as ISO 8859-1
        std::printf("%s is stored as %s and read as %s\n", name,
                    vynulib::transcode(VYNCS_ISO_8859_1, VYNCS_UTF8, local).c_str(), reinterpret_cast<char*>(back));
}

} // namespace

int main() {
    for (char const* const name :
         {"café.txt", "日記.txt", "smile 😀.txt", "U+00E9.txt"}) // the last is not read as it was
        show(name);
}

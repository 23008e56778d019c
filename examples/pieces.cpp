// Reads a file in pieces as a character set, and tells how much of it is lost and where the first loss stands:
// pieces FILE SET
#include <vynulib/Transcoding.h>

#include <cstdio>
#include <cstring>
#include <optional>

int main(int argc, char** argv) {
    std::optional<VynCharSet> const set = argc == 3 ? vynulib::charSetNamed(argv[2]) : std::nullopt;
    std::FILE* const file = set ? std::fopen(argv[1], "rb") : nullptr;
    if (!file) {
        std::fputs("usage: pieces FILE SET\n", stderr);
        return 2;
    }

    char bytes[4096];
    char16_t units[4096]; // no byte makes more than one unit
    std::size_t kept = 0, offset = 0, characters = 0, losses = 0;
    for (bool last = false; !last;) {
        std::size_t const got = std::fread(bytes + kept, 1, sizeof bytes - kept, file);
        std::size_t const filled = kept + got;
        last = got == 0;
        std::size_t at = 0;
        for (;;) {
            vynulib::Progress const done = vynulib::decode(*set, {bytes + at, filled - at}, units, 4096, last);
            characters += done.written; // what was converted stands in `units`
            at += done.read;
            if (done.status != vynulib::Status::unconvertible)
                break;
            if (losses++ == 0)
                std::printf("the first loss: %zu bytes at byte %zu\n", done.length, offset + at);
            at += done.length;
        }
        offset += at;
        kept = filled - at; // a character that goes on in the next piece
        std::memmove(bytes, bytes + at, kept);
    }
    std::fclose(file);
    std::printf("%zu units, %zu losses in %zu bytes of %s\n", characters, losses, offset,
                vynulib::preferredName(*set).data());
    return losses == 0 ? 0 : 1;
}

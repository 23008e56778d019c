// Converts a file of any size to UTF-8 and tells where each loss stands: pieces FILE SET
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

    char bytes[4096], utf8[4096];
    std::size_t kept = 0, offset = 0, losses = 0; // `kept` bytes are read and wait, the first of them at `offset`
    for (bool last = false; !last;) {
        std::size_t const got = std::fread(bytes + kept, 1, sizeof bytes - kept, file);
        kept += got;
        last = got == 0;
        std::size_t at = 0;
        for (bool more = true; more;) {
            vynulib::Progress const done =
                vynulib::transcode(*set, VYNCS_UTF8, {bytes + at, kept - at}, utf8, sizeof utf8, last);
            std::fwrite(utf8, 1, done.written, stdout);
            at += done.read;
            more = done.status != vynulib::Status::done;
            if (done.status == vynulib::Status::unconvertible) {
                std::fprintf(stderr, "lost: %zu bytes at byte %zu\n", done.length, offset + at);
                at += done.length;
                ++losses;
            }
        }
        offset += at;
        kept -= at; // a character that goes on in the next piece
        std::memmove(bytes, bytes + at, kept);
    }
    bool const whole = std::ferror(file) == 0 && std::fflush(stdout) == 0;
    std::fclose(file);
    return whole ? losses != 0 : 2;
}

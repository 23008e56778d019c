// What large texts and many threads cost: the rates should be those of 1 MiB, and those of one thread.

#include <vynulib/VynUStringList.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned long mebibyte = 1UL << 20;

double secondsOf(std::function<void()> const& work, int rounds) {
    double least = 1e9;
    for (int i = 0; i < rounds; ++i) {
        auto const begin = Clock::now();
        work();
        least = std::min(least, std::chrono::duration<double>(Clock::now() - begin).count());
    }
    return least;
}

std::string repeated(std::string const& part, unsigned long bytes) {
    std::string text;
    text.reserve(bytes + part.size());
    while (text.size() < bytes)
        text += part;
    return text;
}

using Convert = unsigned long (*)(char* dst, std::string const& source, unsigned long room);

unsigned long utf8ToUtf16(char* dst, std::string const& source, unsigned long room) {
    return UTF8ToUTF16(reinterpret_cast<unsigned short*>(dst), reinterpret_cast<unsigned char const*>(source.c_str()),
                       room / 2);
}
unsigned long gbkToUtf8(char* dst, std::string const& source, unsigned long room) {
    return LocalToUTF8(reinterpret_cast<unsigned char*>(dst), source.c_str(), room, VYNCS_WCP936);
}
unsigned long utf8ToGbk(char* dst, std::string const& source, unsigned long room) {
    return UTF8ToLocal(dst, reinterpret_cast<unsigned char const*>(source.c_str()), room, VYNCS_WCP936);
}

struct Row {
    char const* name;
    Convert convert;
    char const* part;
};
constexpr Row rows[] = {{"UTF8ToUTF16", utf8ToUtf16, "Съешь ещё этих мягких булок. "},
                        {"LocalToUTF8, GBK", gbkToUtf8, "\xCC\xEC\xB5\xD8\xD0\xFE\xBB\xC6 "},
                        {"UTF8ToLocal, GBK", utf8ToGbk, "天地玄黄 "}};

void compareSizes() {
    constexpr unsigned long large = 1024 * mebibyte;
    std::vector<char> dst(2 * large + 2);
    std::puts("| | 1 MiB, MiB/s | 1 GiB, MiB/s | ratio |\n|---|---:|---:|---:|");
    for (Row const& row : rows) {
        double rates[2] = {};
        for (unsigned long const bytes : {mebibyte, large}) {
            std::string const text = repeated(row.part, bytes);
            double const seconds =
                secondsOf([&] { row.convert(dst.data(), text, dst.size()); }, bytes == large ? 3 : 300);
            rates[bytes == large] = static_cast<double>(bytes) / mebibyte / seconds;
        }
        std::printf("| %s | %.0f | %.0f | %.2f |\n", row.name, rates[0], rates[1], rates[1] / rates[0]);
    }
}

/// How many times as much two threads get done as one.
double gainOfTwoThreads(Row const& row) {
    std::string const text = repeated(row.part, mebibyte / 16);
    auto const work = [&] {
        std::vector<char> dst(4 * text.size());
        for (int i = 0; i < 4000; ++i)
            row.convert(dst.data(), text, dst.size());
    };
    double const one = secondsOf(work, 5);
    double const two = secondsOf(
        [&] {
            std::thread other(work);
            work();
            other.join();
        },
        5);
    return 2 * one / two;
}

/// How many times as long as with `std::u16string` it takes to split 10 million units.
double splitAgainstStandard() {
    std::u16string text;
    while (text.size() < 10'000'000)
        text += u"forty units stand between the two ends, ";
    VynUString const ours(text);
    double const split = secondsOf([&] { ours.split(u','); }, 3);
    double const standard = secondsOf(
        [&] {
            std::vector<std::u16string> fields;
            for (std::size_t begin = 0, end = 0; end != text.npos; begin = end + 1) {
                end = text.find(u',', begin);
                fields.push_back(text.substr(begin, end - begin));
            }
        },
        3);
    return split / standard;
}

} // namespace

int main() {
    compareSizes();
    std::printf(
        "\nTwo threads on one converter get done %.2f times as much as one. To split 10 million units takes %.2f "
        "times\nas long as with `std::u16string`.\n",
        gainOfTwoThreads(rows[2]), splitAgainstStandard());
    return 0;
}

// The samples of docs/guide.md in one program: guide FILE, a file in UTF-8 with losses.
#include <vynulib/Transcoding.h>
#include <vynulib/VynUStringList.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <thread>

namespace {

void convertStrictly(std::string const& bytes) {
    // [strict]
    vynulib::Report report;
    std::string const utf8 = vynulib::transcode(VYNCS_WCP932, VYNCS_UTF8, bytes, vynulib::OnError::replace, &report);
    if (report.losses != 0)
        std::cout << report.losses << " characters lost, the first at byte " << report.firstLoss << '\n';
    // [strict]
    std::cout << utf8 << '\n';
}

void askForASet() {
    // [name]
    std::optional<VynCharSet> const set = vynulib::charSetNamed("shift-jis");
    if (set)
        std::cout << vynulib::preferredName(*set) << " has the number " << *set << '\n';
    // [name]
}

void choosePolicies() {
    // [policies]
    using vynulib::OnError;
    std::u16string_view const text = u"5 €, 日";
    for (OnError const onError : {OnError::stop, OnError::replace, OnError::escape, OnError::drop})
        std::cout << '"' << vynulib::encode(VYNCS_ISO_8859_1, text, onError) << "\"\n";
    // [policies]
}

void fold(std::string const& line) {
    // [strings]
    VynUStringList towns(VynUString(line.c_str(), VYNCS_UTF8), u';');
    VynUString first = towns.at(0);
    first.trim(VynUString::TRIM_BOTH, VynUString::TRIM_WHITESPACE);
    bool const same = first.compareNoCase(towns.at(1)) == 0;
    first.toUpper(false);
    std::cout << first.c_str(VYNCS_UTF8) << (same ? " twice\n" : " once\n");
    // [strings]
}

void convertOnThreads(std::string const& bytes) {
    // [threads]
    std::size_t units[4];
    std::thread threads[4];
    for (std::size_t i = 0; i < 4; ++i)
        threads[i] = std::thread([&, i] { units[i] = vynulib::decode(VYNCS_EUC_KR, bytes).size(); });
    for (std::thread& thread : threads)
        thread.join();
    // [threads]
    std::cout << units[0] + units[1] + units[2] + units[3] << " units on four threads\n";
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    std::ifstream file(argv[1], std::ios::binary);
    std::string const bytes(std::istreambuf_iterator<char>(file), {});
    std::cout << (vynulib::isValid(VYNCS_UTF8, bytes) ? "no loss\n" : "a loss\n");
    convertStrictly("\x93\xFA\x96\x7B \x81");
    askForASet();
    choosePolicies();
    fold(" Genève ;GENÈVE");
    convertOnThreads("\xC7\xD1\xB1\xDB");
}

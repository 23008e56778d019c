// What it costs to load the library and to use a set for the first time, in fresh processes. With --level it tells the
// instruction set that is used.

#include <vynulib/Version.h>
#include <vynulib/VynCharSet.h>

#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Costs {
    double load;    // milliseconds
    double use;     // the same, of the first conversion
    long loadBytes; // private memory
    long useBytes;
};

struct NamedSet {
    char const* name;
    VynCharSet cs;
};
constexpr NamedSet sets[] = {{"UTF-8", VYNCS_UTF8},        {"KOI8-R", VYNCS_KOI8R},  {"Shift_JIS", VYNCS_SHIFTJIS},
                             {"SJIS0213", VYNCS_SJIS0213}, {"GBK", VYNCS_WCP936},    {"Big5", VYNCS_BIG5},
                             {"WCP949", VYNCS_WCP949},     {"EUC-JP", VYNCS_EUC_JP}, {"EUC-KR", VYNCS_EUC_KR},
                             {"GB18030", VYNCS_GB18030}};

double millisecondsSince(Clock::time_point begin) {
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

/// What no other process that uses the library can share.
long privateBytes() {
    std::ifstream file("/proc/self/smaps_rollup");
    long kibibytes = 0;
    for (std::string line; std::getline(file, line);)
        if (line.rfind("Private_Dirty", 0) == 0)
            kibibytes += std::stol(line.substr(line.find(':') + 1));
    return kibibytes * 1024;
}

template <class Function>
Function* find(void* library, char const* name) {
    return reinterpret_cast<Function*>(dlsym(library, name));
}

Costs measure(VynCharSet cs) {
    Costs costs{};
    long const before = privateBytes();
    auto const begin = Clock::now();
    void* const library = dlopen(VYNULIB_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    costs.load = millisecondsSince(begin);
    costs.loadBytes = privateBytes() - before;
    auto* const convert = find<decltype(UTF8ToLocal)>(library, "_Z11UTF8ToLocalPcPKhm10VynCharSet");
    char bytes[16];
    auto const use = Clock::now();
    convert(bytes, reinterpret_cast<unsigned char const*>("\u00E9\u4E00"), sizeof bytes, cs);
    costs.use = millisecondsSince(use);
    costs.useBytes = privateBytes() - before - costs.loadBytes;
    return costs;
}

/// In a process of its own.
Costs measureAfresh(VynCharSet cs) {
    int ends[2];
    Costs costs{};
    if (pipe(ends) != 0)
        return costs;
    pid_t const child = fork();
    if (child == 0) {
        costs = measure(cs);
        _exit(write(ends[1], &costs, sizeof costs) == sizeof costs ? 0 : 1);
    }
    close(ends[1]);
    if (read(ends[0], &costs, sizeof costs) != sizeof costs)
        costs = {};
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return costs;
}

template <class Part>
double median(std::vector<Costs> costs, Part part) {
    auto const middle = costs.begin() + static_cast<long>(costs.size() / 2);
    std::nth_element(costs.begin(), middle, costs.end(),
                     [part](Costs const& a, Costs const& b) { return a.*part < b.*part; });
    return static_cast<double>((*middle).*part);
}

int printLevel() {
    void* const library = dlopen(VYNULIB_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    std::string_view const level = find<decltype(vynulib::instructionSet)>(library, "_ZN7vynulib14instructionSetEv")();
    std::printf("%.*s\n", static_cast<int>(level.size()), level.data());
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::strcmp(argv[1], "--level") == 0)
        return printLevel();
    constexpr int processes = 31;
    std::puts("| First use of | conversion, ms | private memory, KiB |\n|---|---:|---:|");
    std::vector<Costs> all;
    for (NamedSet const& set : sets) {
        std::vector<Costs> costs(processes);
        for (Costs& each : costs)
            each = measureAfresh(set.cs);
        std::printf("| %s | %.3f | %.0f |\n", set.name, median(costs, &Costs::use),
                    median(costs, &Costs::useBytes) / 1024);
        all.insert(all.end(), costs.begin(), costs.end());
    }
    std::printf("\nTo load the library takes %.2f ms and %.0f KiB of private memory.\n", median(all, &Costs::load),
                median(all, &Costs::loadBytes) / 1024);
    return 0;
}

// A fuzzer without its engine: runs on each input of its corpus, and on many that are made of them, the same in every run.
// An input that shows a fault is left in the working directory, for scripts/fuzz's build of the same fuzzer.

#include "tests/support/Random.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);
extern "C" [[gnu::weak]] int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace {

std::string current;

void keepInput(int signal) {
    int const file = open("fault-of-" FUZZER, O_CREAT | O_TRUNC | O_WRONLY, 0644);
    if (write(file, current.data(), current.size()) == static_cast<ssize_t>(current.size()))
        std::cerr << "its input is in fault-of-" FUZZER << std::endl;
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void run(std::string input) {
    current = std::move(input);
    std::vector<std::uint8_t> const bytes(current.begin(), current.end()); // no more than these
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

std::vector<std::string> readCorpus() {
    std::vector<std::string> inputs;
    for (auto const& entry : std::filesystem::directory_iterator(CORPUS)) {
        std::ifstream file(entry.path(), std::ios::binary);
        inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    std::ranges::sort(inputs);
    return inputs;
}

/// The beginning of one input and the end of another, and some bytes anew: at times all of them, at times large ones.
std::string makeInput(std::vector<std::string> const& corpus, TestRandom& random) {
    auto const any = [&]() -> std::string const& { return corpus[random.below(corpus.size())]; };
    std::string input = any();
    std::string const& other = any();
    if (random.below(2) == 0)
        input = input.substr(0, random.below(input.size() + 1)) + other.substr(random.below(other.size() + 1));
    if (random.below(4) == 0)
        input.resize(random.below(300));
    unsigned const share = 1 + random.below(random.below(3) == 0 ? 2 : 40), most = random.below(2) == 0 ? 0x100 : 0x40;
    for (char& byte : input)
        byte = random.below(share) == 0 ? static_cast<char>(random.below(most)) : byte;
    return input;
}

} // namespace

int main(int argc, char** argv) {
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);
    for (int const signal : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL})
        std::signal(signal, keepInput);
    std::vector<std::string> const corpus = readCorpus();
    for (std::string const& input : corpus)
        run(input);
    TestRandom random;
    for (int made = 0; made < ROUNDS; ++made)
        run(makeInput(corpus, random));
    std::cout << corpus.size() << " inputs, and " << ROUNDS << " made of them from seed " << random.seed() << std::endl;
    return corpus.empty();
}

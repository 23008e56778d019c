#pragma once

#include <cstdlib>
#include <random>

/// Random numbers that are the same in every run, unless VYNULIB_TEST_SEED in the environment gives another seed. A test
/// that fails names the seed.
class TestRandom {
public:
    TestRandom() : m_seed(chosenSeed()), m_engine(m_seed) {}

    unsigned seed() const { return m_seed; }

    /// A number from 0 to `end` - 1.
    unsigned below(unsigned long end) { return static_cast<unsigned>(m_engine() % end); }

private:
    static unsigned chosenSeed() {
        char const* const given = std::getenv("VYNULIB_TEST_SEED");
        return given ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : 20030401U;
    }

    unsigned m_seed;
    std::mt19937 m_engine;
};

#pragma once

#include <cstdlib>
#include <iterator>
#include <random>

/// Random numbers that are the same in every run, unless VYNULIB_TEST_SEED in the environment gives another seed. A test
/// that fails names the seed.
class TestRandom {
public:
    TestRandom() : m_seed(chosenSeed()), m_engine(m_seed) {}

    unsigned seed() const { return m_seed; }

    /// A number from 0 to `end` - 1.
    unsigned below(unsigned long end) { return static_cast<unsigned>(m_engine() % end); }

    /// UTF-16 in runs of characters of one kind each, whole and broken surrogate pairs among them, from unit `first` on.
    template <class Units>
    Units units(std::size_t length, unsigned first) {
        unsigned const kinds[][2] = {{first, 0x7F},    {0x20, 0x7E},       {0x80, 0x5FF},     {0x600, 0x13FF},
                                     {0x2000, 0x33FF}, {0x4E00, 0x9FFF},   {0xAC00, 0xD7A3},  {0xD800, 0xDFFF},
                                     {0xE000, 0xFFFF}, {0x10000, 0x1FFFF}, {0x20000, 0x2A6FF}};
        using Unit = typename Units::value_type;
        Units text;
        while (text.size() < length) {
            auto const& kind = kinds[below(std::size(kinds))];
            for (unsigned run = 1 + below(20); run != 0; --run) {
                unsigned const scalar = kind[0] + below(kind[1] - kind[0] + 1);
                if (scalar > 0xFFFF)
                    text.push_back(static_cast<Unit>((scalar >> 10) + 0xD7C0));
                text.push_back(static_cast<Unit>(scalar > 0xFFFF ? 0xDC00 + scalar % 0x400 : scalar));
            }
        }
        text.resize(length);
        return text;
    }

private:
    static unsigned chosenSeed() {
        char const* const given = std::getenv("VYNULIB_TEST_SEED");
        return given ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : 20030401U;
    }

    unsigned m_seed;
    std::mt19937 m_engine;
};

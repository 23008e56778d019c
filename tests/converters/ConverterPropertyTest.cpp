#include "tests/support/Random.h"
#include "tests/support/TableReference.h"

#include <climits>
#include <iterator>
#include <memory>
#include <numeric>
#include <string>

namespace {

constexpr int noLimit = INT_MAX; // a source limit, never met: it keeps a byte set's decoder on its literal path
constexpr unsigned long ampleForOne = 32;

/// Room for whatever a text becomes: an escape in UTF-32 takes 24 bytes.
template <class Element>
unsigned long ampleFor(std::vector<Element> const& text) {
    return 24 * text.size() + 24;
}

constexpr bool isHigh(unsigned unit) {
    return (unit & 0xFC00) == 0xD800;
}
constexpr bool isLow(unsigned unit) {
    return (unit & 0xFC00) == 0xDC00;
}

class ConverterProperty : public testing::TestWithParam<VynCharSet> {
protected:
    ConverterProperty() {
        for (TableSet const& set : tableSets())
            if (set.cs == cs)
                reference = std::make_unique<TableReference>(set);
    }

    unsigned anyOf(unsigned first, unsigned last) { return first + random.below(last - first + 1); }

    /// Runs of characters of one kind each, whole and broken surrogate pairs among them.
    Units anyUnits(unsigned length) {
        constexpr unsigned kinds[][2] = {{0x01, 0x7F},       {0x20, 0x7E},      {0x80, 0x5FF},    {0x2000, 0x33FF},
                                         {0x4E00, 0x9FFF},   {0xAC00, 0xD7A3},  {0xD800, 0xDFFF}, {0xE000, 0xFFFF},
                                         {0x10000, 0x1FFFF}, {0x20000, 0x2A6FF}};
        Units units;
        while (units.size() < length) {
            auto const& kind = kinds[anyOf(0, std::size(kinds) - 1)];
            for (unsigned run = anyOf(1, 20); run != 0; --run) {
                unsigned const scalar = anyOf(kind[0], kind[1]);
                if (scalar > 0xFFFF)
                    units.push_back(static_cast<unsigned short>((scalar >> 10) + 0xD7C0));
                units.push_back(static_cast<unsigned short>(scalar > 0xFFFF ? 0xDC00 + scalar % 0x400 : scalar));
            }
        }
        units.resize(length);
        return units;
    }

    /// Encoded text, the same with some bytes spoilt, and noise.
    Bytes anyBytes(unsigned length) {
        Bytes bytes = kit.encode(anyUnits(length), length).output;
        if (unsigned const kind = anyOf(0, 3); kind == 0)
            for (unsigned char& byte : bytes)
                byte = static_cast<unsigned char>(anyOf(1, 0xFF));
        else if (kind > 1)
            for (std::size_t at = anyOf(0, 20); at < bytes.size(); at += anyOf(1, 20))
                bytes[at] = static_cast<unsigned char>(anyOf(anyOf(0, 1) != 0 ? 0x7F : 1, 0xFF));
        bytes.resize(bytes.size() / unitSize * unitSize);
        return bytes;
    }

    /// The characters of a text as the set takes them, up to a zero unit.
    std::vector<Units> charactersOf(Units const& units) const {
        bool const pairs = cs == VYNCS_UTF8 || cs == VYNCS_UTF32 || cs == VYNCS_GB18030 || cs == VYNCS_SJIS0213;
        std::vector<Units> characters;
        for (auto at = units.begin(); at != units.end() && *at != 0; at += std::ssize(characters.back()))
            if (pairs && isHigh(at[0]) && units.end() - at > 1 && isLow(at[1]))
                characters.push_back({at[0], at[1]});
            else
                characters.push_back({at[0]});
        return characters;
    }

    /// What `decode` gives without a source limit, by way of one that is never met.
    /// (UTF-16 takes no limit for a limit of nothing.)
    Converted<unsigned short> literallyDecoded(Bytes const& bytes, unsigned long room, ILLCHAR_OPTYPE op) {
        return kit.decode(bytes, room, {.op = op, .maxSrc = cs == VYNCS_UTF16 ? 0 : noLimit});
    }

    /// An escape of the UTF-8 set takes the unit behind it along, even a terminator: no policy for texts in general.
    bool canEncodeAnyTextWith(ILLCHAR_OPTYPE op) const { return cs != VYNCS_UTF8 || op != ILLCHAR_ESCAPE; }

    TestRandom random;
    testing::ScopedTrace trace{__FILE__, __LINE__, "VYNULIB_TEST_SEED=" + std::to_string(random.seed())};
    VynCharSet const cs = GetParam();
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(cs);
    unsigned const unitSize = converter.getMinUnitSize();
    ConvertKit kit{converter};
    std::unique_ptr<TableReference> reference; // of a table set
};

TEST_P(ConverterProperty, DecodesAsTheLiteralLoopInEveryRoom) {
    for (int i = 0; i < 40 && !HasFailure(); ++i) {
        Bytes const bytes = anyBytes(anyOf(0, 80));
        for (ILLCHAR_OPTYPE const op : policies) {
            Units const whole = literallyDecoded(bytes, ampleFor(bytes), op).output;
            for (unsigned long room = 0; room <= whole.size() + 3; ++room) {
                Converted<unsigned short> expected = literallyDecoded(bytes, room, op);
                ASSERT_EQ(kit.decode(bytes, room, {.op = op}), expected);
                ASSERT_EQ(kit.decode(bytes, room, {.op = op, .offset = 0}), expected);
                if (reference) {
                    ASSERT_EQ(reference->decode(bytes, room, {.op = op}), expected);
                }
                expected.illegal = false;
                ASSERT_EQ(kit.decode(bytes, room, {.op = op, .withFlag = false}), expected);
                // In UTF-8 a pair becomes U+FFFD in the last unit of room.
                if (cs == VYNCS_UTF8 && !expected.output.empty() && expected.output.back() == 0xFFFD)
                    expected.output.pop_back();
                ASSERT_LE(expected.output.size(), whole.size());
                ASSERT_TRUE(std::equal(expected.output.begin(), expected.output.end(), whole.begin()));
            }
        }
    }
}

TEST_P(ConverterProperty, EndsAtTheSourceLimitBehindACharacter) {
    for (int i = 0; i < 40 && !HasFailure(); ++i) {
        Bytes const bytes = anyBytes(anyOf(0, 80));
        auto const elements = static_cast<int>(bytes.size() / unitSize);
        Converted<unsigned short> const whole = kit.decode(bytes, ampleFor(bytes), {.maxSrc = noLimit});
        for (int limit = 0; limit <= elements + 1; ++limit) {
            Units const upTo = kit.decode(bytes, ampleFor(bytes), {.maxSrc = limit}).output;
            for (ILLCHAR_OPTYPE const op : policies) {
                Call const call{.op = op, .maxSrc = limit};
                Converted<unsigned short> const decoded = kit.decode(bytes, ampleFor(bytes), call);
                ASSERT_EQ(decoded, reference ? reference->decode(bytes, ampleFor(bytes), call) : decoded);
            }
            // A text that grows with the limit ended exactly at it: the rest is what follows.
            if (limit == 0 || kit.decode(bytes, ampleFor(bytes), {.maxSrc = limit + 1}).output == upTo)
                continue;
            Bytes const rest(bytes.begin() + limit * static_cast<long>(unitSize), bytes.end());
            Units joined = upTo;
            Units const restUnits = kit.decode(rest, ampleFor(rest), {.maxSrc = noLimit}).output;
            joined.insert(joined.end(), restUnits.begin(), restUnits.end());
            ASSERT_EQ(joined, whole.output) << limit;
        }
        ASSERT_EQ(kit.decode(bytes, ampleFor(bytes), {.maxSrc = std::max(elements, 1)}).output, whole.output);
    }
}

TEST_P(ConverterProperty, EncodesAsTheReferenceInEveryRoom) {
    for (int i = 0; i < 40 && !HasFailure(); ++i) {
        Units const units = anyUnits(anyOf(0, 80));
        for (ILLCHAR_OPTYPE const op : policies) {
            if (!canEncodeAnyTextWith(op))
                continue;
            unsigned long const size = kit.encode(units, ampleFor(units), {.op = op}).output.size();
            for (unsigned long room = 0; room <= size + 5; ++room) {
                Converted<unsigned char> expected = kit.encode(units, room, {.op = op});
                if (reference) {
                    ASSERT_EQ(reference->encode(units, room, op), expected) << room;
                }
                ASSERT_EQ(kit.encode(units, room, {.op = op, .offset = 0}), expected);
                expected.illegal = false;
                ASSERT_EQ(kit.encode(units, room, {.op = op, .withFlag = false}), expected);
            }
        }
    }
}

TEST_P(ConverterProperty, CountsWhatItConverts) {
    for (int i = 0; i < 200 && !HasFailure(); ++i) {
        Units const units = anyUnits(anyOf(1, 80));
        unsigned long needed = kit.encode(units, ampleFor(units)).output.size();
        // Where pairs are looked for, a high surrogate at the end is replaced but not counted (GB18030 ends before it).
        if (isHigh(units.back()) && (cs == VYNCS_UTF8 || cs == VYNCS_UTF32 || cs == VYNCS_SJIS0213))
            needed -= unitSize;
        ASSERT_EQ(kit.countBytes(units), needed);
        Bytes const bytes = anyBytes(anyOf(1, 80));
        if (reference) {
            ASSERT_EQ(kit.countUnits(bytes), reference->countUnits(bytes));
        }
        // A count that is bounded looks at nothing behind, and is that of a text which ends there.
        for (auto rest = units; !rest.empty(); rest.pop_back())
            ASSERT_EQ(kit.countBytes(rest, false), kit.countBytes(rest));
        for (auto rest = bytes; !rest.empty(); rest.resize(rest.size() - unitSize))
            ASSERT_EQ(kit.countUnits(rest, false), kit.countUnits(rest));
    }
}

TEST_P(ConverterProperty, TakesIrregularitiesAtEveryPlaceAndAlignment) {
    // Every place of a block, and those about the ends of what is scanned at a time.
    std::vector<unsigned> places(66);
    std::iota(places.begin(), places.end(), 0U);
    places.insert(places.end(), {2046, 2047, 2048, 4094, 4095, 4096, 4097});
    Units const fillers[] = {{'a'}, {0xE9}, {0x3042}, {0x4E00}, {0xD55C}, {0xD83D, 0xDE00}};
    Units const oddities[] = {{0}, {0x7F}, {0xFFFE}, {0xD800}, {0xDC00}, {0xD840, 0xDC0B}, {'U', '+', '0'}, {0x20AC}};
    for (Units const& filler : fillers)
        for (unsigned const place : places) {
            Units units;
            while (units.size() < place + 40)
                units.insert(units.end(), filler.begin(), filler.end());
            Call const call{.op = policies[anyOf(0, 2)], .offset = static_cast<int>(place % 64)};
            Bytes bytes = kit.encode(units, ampleFor(units)).output;
            std::size_t const at = std::min<std::size_t>(place * unitSize, bytes.size() - unitSize);
            bytes[at] = static_cast<unsigned char>(anyOf(0, 3) != 0 ? anyOf(0x7F, 0xFF) : anyOf(0, 0x7E));
            for (unsigned long const room : {bytes.size() + 8, bytes.size(), units.size(), place + 1UL})
                ASSERT_EQ(literallyDecoded(bytes, room, call.op), kit.decode(bytes, room, call)) << place;

            Units const& oddity = oddities[anyOf(0, std::size(oddities) - 1)];
            std::copy(oddity.begin(), oddity.end(), units.begin() + place);
            unsigned long const room = ampleFor(units);
            if (reference) {
                ASSERT_EQ(reference->encode(units, room, call.op), kit.encode(units, room, call)) << place;
            }
        }
}

/// The text may end with the memory that it is in, without a terminator, where the room or the policy ends it.
TEST_P(ConverterProperty, ReadsNoFurtherThanItsOutputReaches) {
    Units units(40, 'a');
    units.push_back(0xFFFE);
    if (kit.encode(units, ampleFor(units), {.op = ILLCHAR_STOP}).illegal) {
        auto const stopped = kit.encode(units, ampleFor(units), {.op = ILLCHAR_STOP, .terminated = false});
        EXPECT_EQ(stopped.output.size(), 40 * unitSize);
        units.insert(units.end(), 10, 0xFFFE);
        unsigned long const escaped = (40 + 11 * 6) * unitSize;
        auto const whole = kit.encode(units, escaped, {.op = ILLCHAR_ESCAPE, .terminated = false});
        EXPECT_EQ(whole.output.size(), escaped);
    }
    for (unsigned byte = 0x80; byte < 0x100 && reference && cs != VYNCS_EUC_JP; ++byte) {
        Bytes bytes(40, 'a');
        bytes.push_back(static_cast<unsigned char>(byte));
        auto const takenAlone = [&](unsigned char next) {
            unsigned char const sequence[] = {bytes.back(), next, 0, 0};
            auto const found = reference->decodeOne(sequence);
            return found.value == 0 && found.bytes == 1;
        };
        if (takenAlone('A') && takenAlone(0xA1)) { // no lead byte: what follows is not looked at
            auto const stopped = kit.decode(bytes, ampleFor(bytes), {.op = ILLCHAR_STOP, .terminated = false});
            EXPECT_EQ(stopped.output.size(), 40UL) << byte;
        }
    }
}

TEST_P(ConverterProperty, GivesBackWhatItEncodes) {
    unsigned long compared = 0;
    for (int i = 0; i < 40 && !HasFailure(); ++i) {
        Units units;
        for (Units const& one : charactersOf(anyUnits(300))) {
            Bytes const code = kit.encode(one, ampleForOne, {.op = ILLCHAR_STOP}).output;
            // Some codes of the double-byte sets can be encoded only.
            if (!code.empty() && (!reference || reference->decode(code, ampleForOne, {}).output == one))
                units.insert(units.end(), one.begin(), one.end());
        }
        auto const encoded = kit.encode(units, ampleFor(units), {.op = ILLCHAR_STOP});
        ASSERT_FALSE(encoded.illegal);
        // Where the room is met first, the end of the source is not looked at.
        ASSERT_EQ(kit.encode(units, encoded.output.size(), {.terminated = false}), encoded);
        for (bool const terminated : {true, false})
            for (int const maxSrc : {cs == VYNCS_UTF16 ? noLimit : -1, noLimit})
                ASSERT_EQ(kit.decode(encoded.output, units.size(), {.maxSrc = maxSrc, .terminated = terminated}).output,
                          units);
        compared += units.size();
    }
    EXPECT_GT(compared, 1000UL);
}

std::vector<VynCharSet> allSets() {
    std::vector<VynCharSet> sets{VYNCS_UTF8, VYNCS_UTF16, VYNCS_UTF16ESC, VYNCS_UTF32};
    for (TableSet const& set : tableSets())
        sets.push_back(set.cs);
    return sets;
}

INSTANTIATE_TEST_SUITE_P(Sets, ConverterProperty, testing::ValuesIn(allSets()),
                         [](auto const& test) { return std::to_string(test.param); });

} // namespace

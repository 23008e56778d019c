// Random text of every set against the reference.

#include "tests/support/Random.h"
#include "tests/support/Reference.h"

#include <climits>
#include <iterator>
#include <numeric>
#include <string>

namespace {

constexpr int noLimit = INT_MAX; // a source limit, never met: it keeps a byte set's decoder on its literal path

/// Room for whatever a text becomes: an escape in UTF-32 takes 24 bytes.
template <class Element>
unsigned long ampleFor(std::vector<Element> const& text) {
    return 24 * text.size() + 24;
}

class ConverterProperty : public testing::TestWithParam<ReferenceSet> {
protected:
    unsigned anyOf(unsigned first, unsigned last) { return first + random.below(last - first + 1); }

    /// Mostly short, sometimes of several blocks.
    unsigned anyLength() { return anyOf(0, 15) != 0 ? anyOf(0, 80) : anyOf(80, 400); }

    Units anyUnits(unsigned length) { return random.units<Units>(length, 1); }

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

    void expectDecodes(Bytes const& bytes, unsigned long room, Call const& call) {
        ASSERT_EQ(kit.decode(bytes, room, call), reference.decode(bytes, room, call))
            << "room " << room << ", limit " << call.maxSrc << ", policy " << call.op;
    }
    void expectEncodes(Units const& units, unsigned long room, Call const& call) {
        // An escape of the UTF-8 set takes the unit after it along, even a terminator: no policy for texts in general.
        if (set.form == Form::Utf8 && call.op == ILLCHAR_ESCAPE)
            return;
        ASSERT_EQ(kit.encode(units, room, call), reference.encode(units, room, call))
            << "room " << room << ", policy " << call.op;
    }

    TestRandom random;
    testing::ScopedTrace trace{__FILE__, __LINE__, "VYNULIB_TEST_SEED=" + std::to_string(random.seed())};
    ReferenceSet const& set = GetParam();
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(set.cs);
    unsigned const unitSize = converter.getMinUnitSize();
    ConvertKit kit{converter};
    Reference reference{set};
};

TEST_P(ConverterProperty, DecodesAsTheReferenceInEveryRoom) {
    for (int i = 0; i < 40 && !HasFailure(); ++i) {
        Bytes const bytes = anyBytes(anyLength());
        for (ILLCHAR_OPTYPE const op : policies) {
            unsigned long const whole = reference.decode(bytes, ampleFor(bytes), {.op = op}).output.size();
            for (unsigned long room = 0; room <= whole + 8; ++room) {
                expectDecodes(bytes, room, {.op = op});
                expectDecodes(bytes, room, {.op = op, .maxSrc = noLimit});
                expectDecodes(bytes, room, {.op = op, .offset = 0, .withFlag = false});
            }
        }
    }
}

TEST_P(ConverterProperty, EndsAtTheSourceLimitAfterACharacter) {
    for (int i = 0; i < 40 && !HasFailure(); ++i) {
        Bytes const bytes = anyBytes(anyOf(0, 80));
        for (int limit = 0; limit <= static_cast<int>(bytes.size() / unitSize) + 1; ++limit)
            for (ILLCHAR_OPTYPE const op : policies)
                expectDecodes(bytes, ampleFor(bytes), {.op = op, .maxSrc = limit});
    }
}

TEST_P(ConverterProperty, EncodesAsTheReferenceInEveryRoom) {
    for (int i = 0; i < 40 && !HasFailure(); ++i) {
        Units const units = anyUnits(anyLength());
        for (ILLCHAR_OPTYPE const op : policies) {
            unsigned long const whole = reference.encode(units, ampleFor(units), {.op = op}).output.size();
            for (unsigned long room = 0; room <= whole + 8; ++room) {
                expectEncodes(units, room, {.op = op});
                expectEncodes(units, room, {.op = op, .offset = 0, .withFlag = false});
            }
        }
    }
}

TEST_P(ConverterProperty, CountsAsTheReference) {
    for (int i = 0; i < 200 && !HasFailure(); ++i) {
        // A count that is bounded looks at nothing after its bound, and is that of a text which ends there.
        for (Units units = anyUnits(anyOf(1, 80)); !units.empty(); units.pop_back())
            for (bool const terminated : {true, false})
                ASSERT_EQ(kit.countBytes(units, terminated), reference.countBytes(units));
        for (Bytes bytes = anyBytes(anyOf(1, 80)); !bytes.empty(); bytes.resize(bytes.size() - unitSize))
            for (bool const terminated : {true, false})
                ASSERT_EQ(kit.countUnits(bytes, terminated), reference.countUnits(bytes));
    }
}

TEST_P(ConverterProperty, TakesIrregularitiesAtEveryPlaceAndAlignment) {
    // Every place of a block, some in later ones, and those about the ends of what is scanned at a time.
    std::vector<unsigned> places(66);
    std::iota(places.begin(), places.end(), 0U);
    places.insert(places.end(), {75, 95, 96, 97, 125, 127, 128, 129, 2046, 2047, 2048, 4094, 4095, 4096, 4097});
    Units const fillers[] = {{'a'}, {0xE9}, {0x3042}, {0x4E00}, {0xD55C}, {0xD83D, 0xDE00}};
    Units const oddities[] = {{0}, {0x7F}, {0xFFFE}, {0xD800}, {0xDC00}, {0xD840, 0xDC0B}, {'U', '+', '0'}, {0x20AC}};
    for (Units const& filler : fillers)
        for (unsigned const place : places) {
            Units units;
            while (units.size() < place + 100)
                units.insert(units.end(), filler.begin(), filler.end());
            Call const call{.op = policies[anyOf(0, 2)], .offset = static_cast<int>(place % 64)};
            Bytes bytes = kit.encode(units, ampleFor(units)).output;
            std::size_t const at = std::min<std::size_t>(place * unitSize, bytes.size() - unitSize);
            bytes[at] = static_cast<unsigned char>(anyOf(0, 3) != 0 ? anyOf(0x7F, 0xFF) : anyOf(0, 0x7E));
            for (unsigned long const room : {bytes.size() + 8, bytes.size(), units.size(), place + 1UL})
                expectDecodes(bytes, room, call);

            Units const& oddity = oddities[anyOf(0, std::size(oddities) - 1)];
            std::copy(oddity.begin(), oddity.end(), units.begin() + place);
            expectEncodes(units, ampleFor(units), call);
        }
}

/// Runs of many characters are looked up together: here nearly all are of one byte, and one about the ends of blocks of two.
TEST_P(ConverterProperty, TakesRunsOfAnyLength) {
    for (unsigned length = 1020; length < 1220; ++length) {
        Units units(length, 'a');
        for (unsigned at = length % 62; at < length; at += 62)
            units[at] = 0x4E00;
        Bytes const bytes = kit.encode(units, ampleFor(units)).output;
        expectDecodes(bytes, ampleFor(bytes), {});
        expectEncodes(units, ampleFor(units), {});
    }
}

/// The text may end with the memory that it is in, without a terminator, where the room or the policy ends it.
TEST_P(ConverterProperty, ReadsNoFurtherThanItsOutputReaches) {
    for (int i = 0; i < 40 && !HasFailure(); ++i) {
        Units units = anyUnits(300);
        units.push_back('a');
        Bytes const bytes = kit.encode(units, ampleFor(units)).output;
        if (bytes.size() >= unitSize && bytes[bytes.size() - unitSize] == 'a') // GB18030 may have ended before
            expectEncodes(units, bytes.size(), {.terminated = false});
        for (int const maxSrc : {-1, noLimit}) {
            unsigned long const room = reference.decode(bytes, ampleFor(bytes), {.maxSrc = maxSrc}).output.size();
            expectDecodes(bytes, room, {.maxSrc = maxSrc, .terminated = false});
        }
    }
    Units units(40, 'a');
    units.push_back(0xFFFE);
    if (reference.encode(units, ampleFor(units), {.op = ILLCHAR_STOP}).illegal) {
        expectEncodes(units, ampleFor(units), {.op = ILLCHAR_STOP, .terminated = false});
        units.insert(units.end(), 10, 0xFFFE);
        expectEncodes(units, (40 + 11 * 6) * unitSize, {.op = ILLCHAR_ESCAPE, .terminated = false});
    }
    bool const hasSingleBytes = unitSize == 1 && set.form != Form::EucJp && set.form != Form::Utf8;
    for (unsigned byte = 0x80; byte < 0x100 && hasSingleBytes; ++byte) {
        auto const takenAlone = [&](unsigned next) {
            unsigned const sequence[] = {byte, next, 0, 0};
            auto const found = reference.decodeOne(sequence);
            return !found.mapped && found.elements == 1;
        };
        Bytes bytes(40, 'a');
        bytes.push_back(static_cast<unsigned char>(byte));
        // No lead byte: what follows is not looked at.
        if (takenAlone('A') && takenAlone(0xA1))
            expectDecodes(bytes, ampleFor(bytes), {.op = ILLCHAR_STOP, .terminated = false});
    }
}

INSTANTIATE_TEST_SUITE_P(Sets, ConverterProperty, testing::ValuesIn(allSets()),
                         [](auto const& test) { return VynCharSetToString(test.param.cs); });

} // namespace

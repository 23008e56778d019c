#include "tests/string/StringTestKit.h"
#include "tests/support/Random.h"

#include <vynulib/VynUChar.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

void requireIndex(bool valid) {
    if (!valid)
        throw std::out_of_range("invalid string index given");
}

// The rules of a string, over plain texts and a number for the capacity.
struct Model {
    Text text;
    unsigned long capacity = inlineCapacity;

    Model() = default;
    explicit Model(Text const& t, unsigned long reserved = 0)
        : text(t), capacity(std::max({inlineCapacity, t.size(), reserved})) {}

    void set(Text const& t) { *this = Model(t, capacity); }

    void resize(unsigned long n, char16_t fill) {
        if (n == npos)
            throw std::length_error("exceed maximum string length");
        if (n > capacity)
            *this = Model(Text(), n); // the old text is lost
        text.resize(n, fill);
    }

    void replace(unsigned long p, unsigned long n, Text const& s, unsigned long q, unsigned long k) {
        requireIndex(p <= text.size() && q <= s.size());
        set(Text(text).replace(p, n, s.substr(q, k)));
    }
};

Text upToZero(Text const& text) {
    return text.substr(0, text.find(u'\0'));
}

// A random program of string operations, run beside the model.
class Program {
public:
    void step() {
        static constexpr void (Program::*operations[])(Slot&, Slot&) = {
            &Program::make, &Program::cut,    &Program::replace, &Program::erase,
            &Program::trim, &Program::resize, &Program::toBytes};
        unsigned long const operation = below(std::size(operations));
        SCOPED_TRACE(testing::Message() << "seed " << m_random.seed() << ", operation " << operation);
        Slot& a = m_slots[below(std::size(m_slots))];
        Slot& b = oneIn(4) ? a : m_slots[below(std::size(m_slots))];
        (this->*operations[operation])(a, b);
        expectSame(a.string, a.model);
        expectSame(b.string, b.model);
        if (a.model.text.size() > 1500)
            a.string.erase(), a.model.set(Text());
    }

private:
    struct Slot {
        VynUString string;
        Model model;
    };

    unsigned long below(unsigned long n) { return m_random.below(n); }
    bool oneIn(unsigned long n) { return below(n) == 0; }

    // Mostly within a text of this length, at times just or far beyond it.
    unsigned long position(unsigned long length) {
        if (oneIn(12))
            return oneIn(2) ? npos - below(3) : length + 1 + below(3);
        return oneIn(4) ? length : below(length + 1);
    }

    // Letters, white space of several kinds, units without a class, halves of surrogate pairs and zero units.
    char16_t unit() { return u"aB  \t\u3000\u00E9\u0378\x1\xD83D\xDE00"[below(12)]; }

    Text randomText() {
        unsigned long const lengths[] = {below(3), below(12), below(60), 252 + below(10), below(400)};
        Text result(lengths[below(std::size(lengths))], u'\0');
        std::generate(result.begin(), result.end(), [this] { return unit(); });
        return result;
    }

    static void expectSame(VynUString const& string, Model const& model) {
        EXPECT_EQ(textOf(string), model.text);
        EXPECT_EQ(string.data()[model.text.size()], 0);
        EXPECT_EQ(string.capacity(), model.capacity);
    }

    void make(Slot& a, Slot& b) {
        Text const left = a.model.text, right = b.model.text, text = randomText();
        auto const join = [&](auto const& piece, Text const& units) {
            expectSame(a.string + piece, Model(left + units));
            expectSame(piece + a.string, Model(units + left));
        };
        unsigned short const u = unit();
        unsigned long const n = below(400);
        join('z', u"z");
        join(u, upToZero(Text(1, u)));
        join("xyz", u"xyz");
        join(static_cast<char const*>(nullptr), u"");
        join(b.string.data(), upToZero(right));
        Slot results[] = {{makeString(text), Model(text)},
                          {VynUString(makeString(text).data(), n), Model(upToZero(text.substr(0, n)), n)},
                          {VynUString(u, n), Model(Text(u ? n : 0, u))},
                          {a.string + b.string, Model(left + right)}};
        Slot& result = results[below(std::size(results))];
        expectSame(result.string, result.model);
        a = std::move(result);
    }

    void cut(Slot& a, Slot& b) {
        Text const whole = b.model.text;
        unsigned long const p = oneIn(3) ? 0 : position(whole.size()), n = oneIn(3) ? npos : position(whole.size());
        bool const fits = p + (n == npos ? whole.size() - p : n) <= whole.size(); // wraps, deliberately
        Model const part(p < whole.size() ? whole.substr(p, n) : Text());
        expectSame(VynUString(b.string, p, n), part);
        EXPECT_EQ(outcomeOf([&] { a.string = p == 0 && n != npos ? b.string.left(n) : b.string.mid(p, n); }),
                  outcomeOf([&] { requireIndex(fits), a.model = part; }));
    }

    void replace(Slot& a, Slot& b) {
        Text const inserted = b.model.text;
        unsigned long const length = a.model.text.size();
        if (oneIn(3)) {
            unsigned long const f = below(length + 2), l = below(length + 2); // `f` after `l`: to the end
            EXPECT_EQ(outcomeOf([&] { a.string.replace(a.string.data() + f, a.string.data() + l, b.string); }),
                      outcomeOf([&] { a.model.replace(l <= length ? f : npos, l - f, inserted, 0, npos); }));
            return;
        }
        unsigned long const p = position(length), n = oneIn(2) ? below(4) : position(length);
        unsigned long const q = oneIn(2) ? p + below(4) : position(inserted.size());
        unsigned long const k = position(oneIn(2) ? 9 : inserted.size());
        EXPECT_EQ(outcomeOf([&] { a.string.replace(p, n, b.string, q, k); }),
                  outcomeOf([&] { a.model.replace(p, n, inserted, q, k); }));
    }

    void erase(Slot& a, Slot&) {
        unsigned long const p = position(a.model.text.size()), n = position(a.model.text.size());
        EXPECT_EQ(outcomeOf([&] { a.string.erase(p, n); }),
                  outcomeOf([&] { a.model.replace(a.model.text.empty() ? 0 : p, n, Text(), 0, 0); }));
    }

    void trim(Slot& a, Slot&) {
        auto const ends = static_cast<VynUString::TrimCmd>(1 + below(3));
        auto const target = static_cast<VynUString::TrimTarget>(below(3));
        auto const matches = [&](char16_t u) {
            unsigned const bits = VynUChar::getCharClass(u);
            bool const unclassified = target == VynUString::TRIM_WHITESPACE_AND_UNCLASSIFIED && bits == 0;
            return target == VynUString::TRIM_SPACE ? u == u' ' : (bits & 1) || unclassified;
        };
        a.string.trim(ends, target);
        Text& t = a.model.text;
        if (ends & VynUString::TRIM_LEADING)
            t.erase(t.begin(), std::find_if_not(t.begin(), t.end(), matches));
        if (ends & VynUString::TRIM_TRAILING)
            t.erase(std::find_if_not(t.rbegin(), t.rend(), matches).base(), t.end());
    }

    void resize(Slot& a, Slot&) {
        unsigned long const n = oneIn(20) ? npos : below(oneIn(3) ? 700 : 300);
        EXPECT_EQ(outcomeOf([&] { oneIn(2) ? a.string.resize(n, 'q', VYNCS_ISO_8859_1) : a.string.resize(n, u'q'); }),
                  outcomeOf([&] { a.model.resize(n, u'q'); }));
    }

    // A rendering stays with the string, so a stale one shows here after whatever changed the text.
    void toBytes(Slot& a, Slot&) {
        VynCharSet const set = oneIn(2) ? VYNCS_UTF8 : VYNCS_UTF16ESC;
        EXPECT_STREQ(a.string.c_str(set), makeString(a.model.text).c_str(set));
    }

    TestRandom m_random;
    Slot m_slots[6];
};

TEST(VynUStringEditing, BehavesAsTheModelInARandomProgram) {
    Program program;
    for (int step = 0; step < 40'000 && !HasFailure(); ++step)
        program.step();
}

} // namespace

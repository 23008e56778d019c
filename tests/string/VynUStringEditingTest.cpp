#include "tests/string/StringTestKit.h"
#include "tests/support/Random.h"

#include <vynulib/VynUChar.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

using Text = std::u16string;

constexpr unsigned long npos = VynUString::npos, inlineCapacity = 257;

// The rules of a string, over plain texts and a number for the capacity.
struct Model {
    Text text;
    unsigned long capacity = inlineCapacity;

    Model() = default;
    explicit Model(Text const& t, unsigned long reserved = 0)
        : text(t), capacity(std::max({inlineCapacity, t.size(), reserved})) {}

    void set(Text const& t) {
        capacity = std::max(capacity, t.size());
        text = t;
    }

    void resize(unsigned long n, char16_t fill) {
        if (n == npos)
            throw std::length_error("exceed maximum string length");
        if (n > capacity)
            *this = Model(Text(), n); // the old text is lost
        text.resize(n, fill);
    }

    void replace(unsigned long p, unsigned long n, Text const& s, unsigned long q, unsigned long k) {
        checkRange(p <= text.size() && q <= s.size());
        set(Text(text).replace(p, n, s.substr(q, k)));
    }

    static void checkRange(bool holds) {
        if (!holds)
            throw std::out_of_range("invalid string index given");
    }
};

Text upToZero(Text const& text) {
    return text.substr(0, text.find(u'\0'));
}

// A random program of string operations, run beside the model.
class Program {
public:
    void step() {
        static constexpr void (Program::*operations[])() = {&Program::make,  &Program::assign, &Program::replace,
                                                            &Program::erase, &Program::trim,   &Program::resize,
                                                            &Program::cut,   &Program::toBytes};
        unsigned long const operation = below(std::size(operations));
        SCOPED_TRACE(testing::Message() << "seed " << m_random.seed() << ", operation " << operation);
        m_a = below(slots), m_b = oneIn(4) ? m_a : below(slots);
        (this->*operations[operation])();
        expectSame(a(), modelA());
        expectSame(b(), modelB());
        if (modelA().text.size() > 1500)
            a().erase(), modelA().set(Text());
    }

private:
    static constexpr unsigned long slots = 6;

    VynUString& a() { return m_strings[m_a]; }
    VynUString& b() { return m_strings[m_b]; }
    Model& modelA() { return m_models[m_a]; }
    Model& modelB() { return m_models[m_b]; }

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

    void make() {
        unsigned short const u = unit(), *const units = b().data();
        char const* const bytes = oneIn(2) ? "xyz" : nullptr;
        Text const left = modelA().text, right = modelB().text, text = upToZero(right);
        Text const t = randomText(), one = upToZero(Text(1, u)), xyz = bytes ? u"xyz" : u"";
        unsigned long const n = below(400);
        std::pair<VynUString, Model> results[] = {
            {makeString(t), Model(t)},         {VynUString(u, n), Model(Text(u ? n : 0, u))},
            {a() + 'z', Model(left + u'z')},   {'z' + a(), Model(u'z' + left)},
            {a() + bytes, Model(left + xyz)},  {bytes + a(), Model(xyz + left)},
            {a() + units, Model(left + text)}, {units + a(), Model(text + left)},
            {a() + b(), Model(left + right)},  {a() + u, Model(left + one)},
            {u + a(), Model(one + left)}};
        for (auto const& [string, model] : results)
            expectSame(string, model);
        auto& kept = results[below(std::size(results))];
        a() = std::move(kept.first);
        modelA() = kept.second;
        expectSame(VynUString(makeString(t).data(), n), Model(upToZero(t.substr(0, n)), n));
    }

    void cut() {
        Text const whole = modelB().text;
        unsigned long const p = oneIn(3) ? 0 : position(whole.size()), n = oneIn(3) ? npos : position(whole.size());
        unsigned long const count = n == npos ? whole.size() - p : n;
        bool const fits = p + count <= whole.size(); // wraps, deliberately
        Text const part = p < whole.size() ? whole.substr(p, n) : Text();
        expectSame(VynUString(b(), p, n), Model(part));
        EXPECT_EQ(outcomeOf([&] { a() = p == 0 && n != npos ? b().left(n) : b().mid(p, n); }),
                  outcomeOf([&] { Model::checkRange(fits); }));
        if (fits)
            modelA() = Model(part);
    }

    void assign() {
        unsigned long const from = below(modelB().text.size() + 1);
        if (oneIn(3)) {
            modelA().set(upToZero(modelB().text.substr(from)));
            a() = b().data() + from;
        } else if (oneIn(2)) {
            modelA().set(Text(modelB().text));
            a() = b();
        } else if (m_a != m_b) {
            expectAbandoned(a());
            a().assign(b());
            modelA() = Model(modelB().text);
        }
    }

    void replace() {
        Text const inserted = modelB().text;
        unsigned long const length = modelA().text.size();
        if (oneIn(3)) {
            unsigned long const f = below(length + 2), l = below(length + 2);
            EXPECT_EQ(outcomeOf([&] { a().replace(a().data() + f, a().data() + l, b()); }),
                      outcomeOf([&] { modelA().replace(l <= length ? f : npos, l - f, inserted, 0, npos); }));
        } else {
            unsigned long const p = position(length), n = oneIn(2) ? below(4) : position(length);
            unsigned long const q = oneIn(2) ? p + below(4) : position(inserted.size());
            unsigned long const k = position(oneIn(2) ? 9 : inserted.size());
            EXPECT_EQ(outcomeOf([&] { a().replace(p, n, b(), q, k); }),
                      outcomeOf([&] { modelA().replace(p, n, inserted, q, k); }));
        }
    }

    void erase() {
        unsigned long const p = position(modelA().text.size()), n = position(modelA().text.size());
        EXPECT_EQ(outcomeOf([&] { a().erase(p, n); }),
                  outcomeOf([&] { modelA().text.empty() ? void() : modelA().replace(p, n, Text(), 0, 0); }));
    }

    void trim() {
        auto const ends = static_cast<VynUString::TrimCmd>(1 + below(3));
        auto const target = static_cast<VynUString::TrimTarget>(below(3));
        auto const matches = [&](char16_t u) {
            unsigned const bits = VynUChar::getCharClass(u);
            bool const unclassified = target == VynUString::TRIM_WHITESPACE_AND_UNCLASSIFIED && bits == 0;
            return target == VynUString::TRIM_SPACE ? u == u' ' : (bits & 1) || unclassified;
        };
        a().trim(ends, target);
        Text& t = modelA().text;
        if (ends & VynUString::TRIM_LEADING)
            t.erase(t.begin(), std::find_if_not(t.begin(), t.end(), matches));
        if (ends & VynUString::TRIM_TRAILING)
            t.erase(std::find_if_not(t.rbegin(), t.rend(), matches).base(), t.end());
    }

    void resize() {
        unsigned long const n = oneIn(20) ? npos : below(oneIn(3) ? 700 : 300);
        unsigned short const q = u'q';
        EXPECT_EQ(outcomeOf([&] { oneIn(2) ? a().resize(n, 'q', VYNCS_ISO_8859_1) : a().resize(n, q); }),
                  outcomeOf([&] { modelA().resize(n, q); }));
    }

    // A rendering stays with the string, so a stale one shows here after whatever changed the text.
    void toBytes() {
        VynCharSet const set = oneIn(2) ? VYNCS_UTF8 : VYNCS_UTF16ESC;
        EXPECT_STREQ(a().c_str(set), makeString(modelA().text).c_str(set));
    }

    TestRandom m_random;
    VynUString m_strings[slots];
    Model m_models[slots];
    unsigned long m_a = 0, m_b = 0;
};

TEST(VynUStringEditing, BehavesAsTheModelInARandomProgram) {
    Program program;
    for (int step = 0; step < 40'000 && !HasFailure(); ++step)
        program.step();
}

TEST(VynUStringEditing, OddArgumentsDoWhatIsStated) {
    VynUString s("abcd"), x("x"), empty;
    s.erase().resize(4, '\x82', VYNCS_SHIFTJIS); // makes two units, and what was behind them shows
    EXPECT_EQ(textOf(s), Text(u"\xFF42\xFF42\0d", 4));
    EXPECT_TRUE(s.mid(9).empty()); // the sum of position and count wraps
    EXPECT_EQ(outcomeOf([&] { empty.erase(5, 1); }), "done");
    EXPECT_EQ(outcomeOf([&] { s.erase(5, 1); }), "out_of_range: invalid string index given");
    EXPECT_EQ(outcomeOf([&] { s.replace(x.data(), x.data(), x); }), outcomeOf([&] { s.erase(5, 1); }));
    EXPECT_EQ(textOf(s.replace(s.data() + 2, s.data() + 1, x)), u"\xFF42\xFF42x"); // to the end
}

} // namespace

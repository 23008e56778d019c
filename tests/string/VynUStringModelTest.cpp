// Random programs of string operations, run beside a plain model of their rules. VYNULIB_TEST_SEED in the environment
// chooses another program.

#include "tests/string/StringModel.h"
#include "tests/string/StringTestKit.h"

#include <vynulib/VynUStringList.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <utility>

namespace {

using namespace model;

class Program {
public:
    explicit Program(unsigned seed) : m_random(seed) {}

    void step() {
        static constexpr struct {
            char const* name;
            void (Program::*run)();
        } operations[] = {
            {"construct", &Program::construct}, {"assign", &Program::assign},   {"append", &Program::append},
            {"replace", &Program::replace},     {"erase", &Program::erase},     {"trim", &Program::trim},
            {"resize", &Program::resize},       {"cut", &Program::cut},         {"search", &Program::search},
            {"compare", &Program::compare},     {"mapCase", &Program::mapCase}, {"exchange", &Program::exchange},
            {"toBytes", &Program::toBytes},     {"split", &Program::split},
        };
        auto const& operation = operations[below(std::size(operations))];
        SCOPED_TRACE(operation.name);
        m_a = below(slots), m_b = oneIn(4) ? m_a : below(slots);
        (this->*operation.run)();
        expectSame(a(), modelA());
        expectSame(b(), modelB());
        if (modelA().text.size() > 1500)
            keepOneOf({{VynUString(), Model()}});
    }

private:
    static constexpr unsigned long slots = 6;

    VynUString& a() { return m_strings[m_a]; }
    VynUString& b() { return m_strings[m_b]; }
    Model& modelA() { return m_models[m_a]; }
    Model& modelB() { return m_models[m_b]; }

    unsigned long below(unsigned long n) { return m_random() % n; }
    bool oneIn(unsigned long n) { return below(n) == 0; }

    // Mostly within a text of this length, at times just or far beyond it.
    unsigned long position(unsigned long length) {
        if (oneIn(12))
            return oneIn(2) ? npos - below(3) : length + 1 + below(3);
        return oneIn(4) ? length : below(length + 1);
    }

    // Letters of few kinds, so that they are found again, with and without case, white space, units without a class,
    // halves of surrogate pairs and zero units.
    char16_t unit() {
        static constexpr Text::value_type kinds[] = {u'a',   u'a',   u'b',   u'B', u' ',  u' ',  0x09,
                                                     0x3000, 0xE9,   0xC9,   0xDF, 0x130, 0x378, 0xD83D,
                                                     0xDE00, 0x1F80, 0xFF41, u'_', u'0',  0};
        return kinds[below(std::size(kinds))];
    }

    Text text() {
        static constexpr unsigned long lengths[] = {3, 3, 3, 12, 12, 60, 262, 400};
        unsigned long const most = lengths[below(std::size(lengths))];
        Text result(most == 262 ? 252 + below(10) : below(most), u'\0');
        std::generate(result.begin(), result.end(), [this] { return oneIn(6) ? unit() : u"abAB "[below(5)]; });
        return result;
    }

    static void expectSame(VynUString const& string, Model const& model) {
        EXPECT_EQ(textOf(string), model.text);
        EXPECT_EQ(string.data()[model.text.size()], 0);
        EXPECT_EQ(string.capacity(), model.capacity);
    }

    // Checks all of them and goes on with one.
    template <std::size_t count>
    void keepOneOf(std::pair<VynUString, Model> (&&results)[count]) {
        for (auto const& [string, model] : results)
            expectSame(string, model);
        auto& kept = results[below(count)];
        a() = std::move(kept.first);
        modelA() = kept.second;
    }

    template <class Action, class ModelAction>
    void both(Action action, ModelAction modelAction) {
        EXPECT_EQ(outcomeOf(action), outcomeOf(modelAction));
    }

    void construct() {
        Text const t = text(), other = modelB().text;
        std::vector<unsigned short> const units(t.begin(), t.end());
        unsigned long const p = position(other.size()), n = position(t.size());
        keepOneOf({{makeString(t), Model(t)},
                   {VynUString(units.data(), units.size()), Model(upToZero(t), t.size())},
                   {VynUString(unitOf(u'x'), t.size()), Model(Text(t.size(), u'x'))},
                   {VynUString(b()), Model(other)},
                   {VynUString(b(), p, n), Model(p < other.size() ? other.substr(p, n) : Text())}});
    }

    void append() {
        Text const left = modelA().text, right = modelB().text, one = upToZero(Text(1, unit()));
        unsigned short const u = one.empty() ? unitOf(0) : one[0];
        keepOneOf({{a() + b(), Model(left + right)},
                   {a() + u, Model(left + one)},
                   {a() + "xyz", Model(left + u"xyz")},
                   {a() + b().data(), Model(left + upToZero(right))},
                   {u + a(), Model(one + left)},
                   {b().data() + a(), Model(upToZero(right) + left)}});
    }

    void assign() {
        unsigned long const from = below(modelB().text.size() + 1);
        Text const rest = upToZero(modelB().text.substr(from));
        if (oneIn(2)) {
            a() = b().data() + from;
            modelA().set(rest);
        } else if (oneIn(2)) {
            std::string const bytes(below(300), 'z');
            a() = bytes.c_str();
            modelA().set(Text(bytes.begin(), bytes.end()));
        } else if (m_a != m_b) {
            expectAbandoned(a());
            a().assign(b());
            modelA() = Model(modelB().text);
        } else {
            a().assign(a());
        }
    }

    void replace() {
        Text const inserted = modelB().text;
        unsigned long const length = modelA().text.size();
        if (oneIn(3)) {
            unsigned long const f = below(length + 2), l = below(length + 2);
            both([&] { a().replace(a().data() + f, a().data() + l, b()); },
                 [&] { modelA().replace(l <= length ? f : npos, l - f, inserted, 0, npos); });
        } else {
            unsigned long const p = position(length), n = oneIn(2) ? below(4) : position(length);
            unsigned long const q = oneIn(2) ? p + below(4) : position(inserted.size());
            unsigned long const k = position(oneIn(2) ? 9 : inserted.size());
            both([&] { a().replace(p, n, b(), q, k); }, [&] { modelA().replace(p, n, inserted, q, k); });
        }
    }

    void erase() {
        unsigned long const p = position(modelA().text.size()), n = position(modelA().text.size());
        bool const wasEmpty = modelA().text.empty();
        both([&] { a().erase(p, n); }, [&] { wasEmpty ? void() : modelA().replace(p, n, Text(), 0, 0); });
        if (oneIn(8)) {
            a().erase();
            modelA().set(Text());
        }
    }

    void trim() {
        auto const ends = static_cast<VynUString::TrimCmd>(1 + below(3));
        auto const target = static_cast<VynUString::TrimTarget>(below(3));
        auto const matches = [&](char16_t u) {
            unsigned const bits = VynUChar::getCharClass(u);
            if (target == VynUString::TRIM_SPACE)
                return u == u' ';
            return (bits & 1) || (target == VynUString::TRIM_WHITESPACE_AND_UNCLASSIFIED && bits == 0);
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
        bool const asByte = oneIn(2);
        both([&] { asByte ? a().resize(n, 'q', VYNCS_ISO_8859_1) : a().resize(n, unitOf(u'q')); },
             [&] { modelA().resize(n, u'q'); });
    }

    void cut() {
        Text const whole = modelB().text;
        unsigned long const p = oneIn(3) ? 0 : position(whole.size()), n = oneIn(3) ? npos : position(whole.size());
        unsigned long const count = n == npos ? whole.size() - p : n;
        bool const fits = p + count <= whole.size(); // wraps, deliberately
        std::string const outcome = outcomeOf([&] { a() = p == 0 && n != npos ? b().left(n) : b().mid(p, n); });
        EXPECT_EQ(outcome, outcomeOf([&] { Model::checkRange(fits); }));
        if (fits)
            modelA() = Model(p < whole.size() ? whole.substr(p, count) : Text());
    }

    void search() {
        Text const& t = modelA().text;
        Text const s = oneIn(2) ? modelB().text : t.substr(below(t.size() + 1), 1 + below(3));
        unsigned long const pos = position(t.size());
        char16_t const u = unit();
        VynUString const sought = makeString(s);
        EXPECT_EQ(a().find(sought, pos), findText(t, s, pos));
        EXPECT_EQ(a().rfind(sought, pos), rfindText(t, s, pos));
        EXPECT_EQ(a().find(a(), pos), pos == 0 && !t.empty() ? 0 : npos);
        EXPECT_EQ(a().rfind(a(), pos), t.empty() ? npos : 0);
        EXPECT_EQ(a().find(unitOf(u), pos), u == 0 ? npos : t.find(u, pos));
        EXPECT_EQ(a().rfind(unitOf(u), pos), u == 0 || pos >= t.size() ? t.size() - 1 : t.rfind(u, pos));
    }

    void compare() {
        Text const other = oneIn(2) ? modelB().text : mapped(modelA().text, VynUChar::m_gUpperCaseTable, oneIn(2));
        VynUString const string = makeString(other);
        unsigned long const n = position(other.size());
        EXPECT_EQ(a().compare(string, n), compareTexts(modelA().text, other, n, false));
        EXPECT_EQ(a().compareNoCase(string, n), compareTexts(modelA().text, other, n, true));
        EXPECT_EQ(a() < string, compareTexts(modelA().text, other, npos, false) < 0);
        EXPECT_EQ(a() == string, compareTexts(modelA().text, other, npos, false) == 0);
        EXPECT_EQ(string.data() >= a(), compareTexts(other, modelA().text, npos, false) >= 0);
    }

    void mapCase() {
        bool const up = oneIn(2), asciiOnly = oneIn(2);
        up ? a().toUpper(asciiOnly) : a().toLower(asciiOnly);
        Text& t = modelA().text;
        t = mapped(t, up ? VynUChar::m_gUpperCaseTable : VynUChar::m_gLowerCaseTable, asciiOnly);
    }

    void exchange() {
        if (oneIn(2)) {
            expectAbandoned(a());
            expectAbandoned(b());
            Model const swappedA(modelB().text), swappedB(modelA().text);
            a().swap(b());
            if (m_a != m_b)
                modelA() = swappedA, modelB() = swappedB;
        } else if (m_a != m_b) {
            a() = std::move(b());
            modelA() = std::exchange(modelB(), Model());
        }
    }

    // A rendering stays with the string, so a stale one shows here after whatever changed the text.
    void toBytes() {
        static constexpr VynCharSet sets[] = {VYNCS_UTF8, VYNCS_UTF32, VYNCS_WCP1252};
        VynCharSet const set = sets[below(std::size(sets))];
        VynUString fresh = makeString(modelA().text);
        EXPECT_STREQ(a().c_str(set), fresh.c_str(set));
        EXPECT_EQ(a().numChars(), makeString(modelA().text).numChars());
    }

    void split() {
        Text const whole = modelA().text;
        Text const separator = oneIn(3) ? modelB().text : whole.substr(below(whole.size() + 1), below(3));
        VynUStringList const list = a().split(makeString(separator));
        std::vector<Text> const fields = splitText(whole, separator);
        ASSERT_EQ(list.size(), fields.size());
        Model combined;
        for (unsigned long i = 0; i < fields.size(); ++i) {
            EXPECT_EQ(textOf(list[i]), fields[i]);
            EXPECT_EQ(list[i].capacity(), Model(fields[i]).capacity);
            combined.set(combined.text + (i > 0 ? modelB().text : Text()) + fields[i]);
        }
        if (combined.text.size() < 3000)
            keepOneOf({{list.combine(b()), combined}});
    }

    std::mt19937 m_random;
    VynUString m_strings[slots];
    Model m_models[slots];
    unsigned long m_a = 0, m_b = 0;
};

TEST(VynUString, BehavesAsTheModelInRandomPrograms) {
    char const* const chosen = std::getenv("VYNULIB_TEST_SEED");
    unsigned const seed = chosen ? static_cast<unsigned>(std::strtoul(chosen, nullptr, 10)) : 20240607;
    Program program(seed);
    for (int step = 0; step < 40'000 && !HasFailure(); ++step) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step));
        program.step();
    }
}

} // namespace

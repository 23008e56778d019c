// Counts as large as their types: they mean as much as there is, and no sum of them wraps.

#include "tests/support/ServedSets.h"

#include <vynulib/vynulib.h>

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <new>
#include <stdexcept>

namespace {

constexpr unsigned long ample = 200;
constexpr unsigned long hugeCounts[] = {INT_MAX - 1UL,     INT_MAX,        INT_MAX + 1UL, UINT_MAX - 1UL,
                                        UINT_MAX,          UINT_MAX + 1UL, LONG_MAX,      LONG_MAX + 1UL,
                                        ULONG_MAX / 2 - 8, ULONG_MAX - 17, ULONG_MAX - 9, ULONG_MAX - 5,
                                        ULONG_MAX - 3,     ULONG_MAX - 1,  ULONG_MAX};

/// What a call makes of a count: its result, and what it wrote.
struct Made {
    unsigned long result = 0;
    alignas(4) unsigned char dst[2 * ample + 8] = {};

    bool operator==(Made const&) const = default;
    unsigned short* units() { return reinterpret_cast<unsigned short*>(dst); }
    char* bytes() { return reinterpret_cast<char*>(dst); }
};

void expectAmple(std::function<void(Made&, unsigned long)> const& call) {
    Made expected;
    call(expected, ample);
    for (unsigned long const count : hugeCounts) {
        Made made;
        call(made, count);
        EXPECT_EQ(made, expected) << count;
    }
}

void convertWithHugeCounts(VynCharSet cs) {
    static constexpr unsigned short units[] = {'a', 0x416, 0x3042, 0xE9, 0xD83D, 0xDE00, 0xFFFE, 'z', 0};
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(cs);
    Made text;
    text.result = converter.fromUTF16(text.dst, units, ample, ILLCHAR_REPLACE, nullptr);
    unsigned char const* const utf8 = text.dst;
    char const* const bytes = text.bytes();
    for (ILLCHAR_OPTYPE const op : {ILLCHAR_STOP, ILLCHAR_REPLACE, ILLCHAR_ESCAPE}) {
        expectAmple(
            [&](Made& m, unsigned long n) { m.result = converter.toUTF16(m.units(), bytes, n, op, nullptr, -1); });
        expectAmple([&](Made& m, unsigned long n) { m.result = converter.fromUTF16(m.dst, units, n, op, nullptr); });
        for (int const maxSrc : {INT_MAX, INT_MAX - 1})
            expectAmple([&](Made& m, unsigned long n) {
                m.result = converter.toUTF16(m.units(), bytes, n, op, nullptr, n == ample ? 100 : maxSrc);
            });
    }
    expectAmple([&](Made& m, unsigned long n) { m.result = converter.getNumUnits(bytes, n); });
    expectAmple([&](Made& m, unsigned long n) { m.result = converter.getNumBytes(units, n); });
    expectAmple([&](Made& m, unsigned long n) { m.result = LocalToUTF8(m.dst, bytes, n, cs); });
    expectAmple([&](Made& m, unsigned long n) { m.result = UTF8ToLocal(m.bytes(), utf8, n, cs); });
    expectAmple([&](Made& m, unsigned long n) { m.result = UTF16ToLocal(m.bytes(), units, n, cs); });
    expectAmple([&](Made& m, unsigned long n) { m.result = UTF16ToUTF8(m.dst, units, n); });
    expectAmple([&](Made& m, unsigned long n) { m.result = UTF8ToUTF16(m.units(), utf8, n); });
    Made most, enough;
    EXPECT_EQ(LocalToUTF16(most.units(), bytes, INT_MAX, cs), LocalToUTF16(enough.units(), bytes, ample, cs));
    EXPECT_EQ(LocalPathToUTF8(most.dst, bytes, INT_MAX), LocalPathToUTF8(enough.dst, bytes, ample));
    EXPECT_EQ(UTF8ToLocalPath(most.bytes(), utf8, INT_MAX), UTF8ToLocalPath(enough.bytes(), utf8, ample));
    EXPECT_EQ(most, enough);
    EXPECT_EQ(LocalToUTF16(most.units(), bytes, INT_MIN, cs) + LocalPathToUTF8(most.dst, bytes, INT_MIN), 0UL);

    if (vynulib::charSetNamed(std::to_string(cs)) != cs || cs == VYNCS_OS_DEFAULT)
        return;
    std::string_view const source(bytes, text.result);
    std::u16string_view const wide(u"a\u0416\u3042\u00E9z");
    expectAmple([&](Made& m, unsigned long n) {
        m.result = vynulib::decode(cs, source, reinterpret_cast<char16_t*>(m.dst), n, true).written;
    });
    expectAmple([&](Made& m, unsigned long n) { m.result = vynulib::encode(cs, wide, m.bytes(), n, true).written; });
    expectAmple([&](Made& m, unsigned long n) {
        m.result = vynulib::transcode(cs, VYNCS_UTF16ESC, source, m.bytes(), n, true, vynulib::OnError::escape).written;
    });
    for (unsigned long const count : hugeCounts) {
        EXPECT_GE(vynulib::maxUnits(cs, count), count / 4);
        EXPECT_GE(vynulib::maxBytes(cs, count), count);
    }
}

TEST(Limits, OfConversionsAreAsMuchAsThereIs) {
    for (VynCharSet const cs : namedSets) {
        SCOPED_TRACE(cs);
        convertWithHugeCounts(cs);
    }
}

TEST(Limits, OfStringsAreAsMuchAsThereIsOrErrors) {
    VynUString const s(u"abcabc"), other(u"bc");
    for (unsigned long const n : hugeCounts) {
        SCOPED_TRACE(n);
        EXPECT_EQ(VynUString(s, 1, n), u"bcabc");
        EXPECT_EQ(VynUString("abc", n, VYNCS_UTF8), u"abc");
        EXPECT_TRUE(VynUString(s, n, n).empty());
        Made made, enough;
        EXPECT_EQ(s.copy(made.units(), n), s.copy(enough.units(), ample));
        EXPECT_EQ(s.copy(made.bytes(), n, VYNCS_UTF32), s.copy(enough.bytes(), ample, VYNCS_UTF32));
        EXPECT_EQ(made, enough);
        EXPECT_EQ(s.compare(other, n), -1);
        EXPECT_EQ(s.compareNoCase(s, n), 0);
        EXPECT_EQ(s.find(u'a', n), VynUString::npos);
        EXPECT_EQ(s.find(other, n), VynUString::npos);
        EXPECT_EQ(s.rfind(u'a', n), 5UL);
        EXPECT_EQ(s.rfind(other, n), 4UL);

        VynUString changed(s);
        EXPECT_EQ(changed.replace(4, n, other, 1, n), u"abcac");
        EXPECT_EQ(changed.erase(2, n), u"ab");
        EXPECT_THROW(changed.erase(n, n), std::out_of_range);
        EXPECT_THROW(changed.replace(n, n, other, 0), std::out_of_range);
        EXPECT_THROW(changed.replace(0, n, other, n), std::out_of_range);
        EXPECT_THROW(changed.at(n), std::out_of_range);
        EXPECT_THROW(changed.at_utf32(n), std::out_of_range);
        EXPECT_THROW(changed.left(n), std::out_of_range);
        if (n != VynUString::npos) {
            EXPECT_THROW(changed.mid(1, n), std::out_of_range);
            EXPECT_THROW(changed.mid(n, 1), std::out_of_range);
        }
        VynUStringList list(changed);
        EXPECT_THROW(list.at(n), std::out_of_range);
        EXPECT_THROW(list.erase(n), std::out_of_range);
        EXPECT_THROW(list.insert(n, changed), std::out_of_range);

        if (n < LONG_MAX / 2) // so much memory may be there
            continue;
        auto const expectRefused = [&](auto call) {
            try {
                call();
                ADD_FAILURE() << "there is no such memory";
            } catch (std::bad_alloc const&) {
            } catch (std::length_error const&) {
            }
            EXPECT_EQ(changed, u"ab");
        };
        expectRefused([&] { changed.AssureSpace(n); });
        expectRefused([&] { changed.resize(n, u'x'); });
        expectRefused([&] { changed.resize(n, 'x', VYNCS_UTF8); });
        expectRefused([&] { VynUString('x', n, VYNCS_UTF8); });
        expectRefused([&] { VynUString(u'x', n); });
        expectRefused([&] { VynUString(s.data(), n); });
    }
}

} // namespace

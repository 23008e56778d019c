#include "tests/string/StringTestKit.h"

#include <vynulib/VynUStringList.h>

#include <gtest/gtest.h>

#include <functional>

namespace {

using Texts = std::vector<std::u16string>;

Texts textsOf(VynUStringList const& list) {
    Texts texts;
    for (VynUString const& element : list)
        texts.push_back(textOf(element));
    return texts;
}

VynUStringList listOf(Texts const& texts) {
    VynUStringList list;
    for (std::u16string const& text : texts)
        list.append(makeString(text));
    return list;
}

std::u16string const longText(300, u'L'); // does not fit inside a string object

TEST(VynUStringList, SplitsAtUnitsAndStringsAndCombinesAgain) {
    using namespace std::string_literals;
    struct {
        std::u16string text, separator;
        Texts fields;
    } const rows[] = {{u",a,,b,", u",", {u"", u"a", u"", u"b"}},
                      {u"", u",", {}},
                      {u"", u"", {u""}},
                      {u"a,b", u"", {u"a,b"}},
                      {u"a--b", u"--", {u"a", u"b"}},
                      {u"a---b", u"--", {u"a", u"-b"}},
                      {u"x\0y,z"s, u",", {u"x\0y"s, u"z"}},
                      {u"a" + longText + longText, longText, {u"a", u""}}};
    for (auto const& row : rows) {
        SCOPED_TRACE(&row - rows);
        VynUString const text = makeString(row.text), separator = makeString(row.separator);
        EXPECT_EQ(textsOf(text.split(separator)), row.fields);
        EXPECT_EQ(textsOf(separator.length() < 2 ? text.split(*separator.data()) : text.split(separator)), row.fields);
        EXPECT_EQ(textsOf(row.separator == u"," ? text.split(',') : text.split(separator)), row.fields);
        VynUString combined = listOf(row.fields).combine(separator);
        EXPECT_EQ(combined.capacity(), VynUString(combined).capacity());
        if (!separator.empty() && row.text.ends_with(row.separator))
            combined = combined + separator;
        EXPECT_EQ(textOf(combined), row.text);
    }
}

TEST(VynUStringList, ChangesAreCheckedAndMayTakeTheirOwnElements) {
    std::string const done = "done", badIndex = "out_of_range: invalid string list index given";
    Texts const abc = {u"a", longText, u"c"};
    VynUStringList const two = listOf({u"x", u"y"});
    struct {
        std::function<void(VynUStringList&)> change;
        std::string outcome;
        Texts after;
    } const rows[] = {
        {[](auto& l) { l = l.at(2); }, done, {u"c"}},
        {[](auto& l) { l.at(3); }, badIndex, abc},
        {[](auto& l) { expectAbandoned(l[1]), l.erase(0).erase(1); }, done, {longText}},
        {[](auto& l) { l.erase(3); }, badIndex, abc},
        {[](auto& l) { l.append(l[1]).append(l[0]); }, done, {u"a", longText, u"c", longText, u"a"}},
        {[&](auto& l) { l.append(l).insert(1, l).append(two); }, done, {u"a", longText, u"c", u"x", u"y"}},
        {[](auto& l) { l.insert(0, l[2]).insert(4, l[2]); }, done, {u"c", u"a", longText, u"c", longText}},
        {[](auto& l) { l.insert(4, l[0]); }, badIndex, abc},
        {[&](auto& l) { l.insert(1, two); }, done, {u"a", u"x", u"y", longText, u"c"}},
        {[&](auto& l) { l.insert(4, two); }, badIndex, abc},
        {[&](auto& l) { l.clear(), l.append(two).erase(1).erase(0), l = two, l = *&l; }, done, {u"x", u"y"}},
        {[](auto& l) { l.begin()->erase(), l.rbegin()->toUpper(true); }, done, {u"", longText, u"C"}},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(&row - rows);
        VynUStringList list = listOf(abc);
        EXPECT_EQ(outcomeOf([&] { row.change(list); }), row.outcome);
        EXPECT_EQ(textsOf(list), row.after);
        EXPECT_EQ(textsOf(VynUStringList(list)), row.after);
    }
}

} // namespace

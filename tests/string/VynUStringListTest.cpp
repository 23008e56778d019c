#include "tests/string/StringTestKit.h"

#include <vynulib/VynUStringList.h>

#include <gtest/gtest.h>

#include <functional>
#include <utility>

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
        char const* name;
        std::u16string text, separator;
        Texts fields;
    } const rows[] = {{"empty fields", u",a,,b,", u",", {u"", u"a", u"", u"b"}},
                      {"no text", u"", u",", {}},
                      {"no text and no separator", u"", u"", {u""}},
                      {"no separator", u"a,b", u"", {u"a,b"}},
                      {"separator of two units", u"a--b", u"--", {u"a", u"b"}},
                      {"overlapping separators", u"a---b", u"--", {u"a", u"-b"}},
                      {"zero unit", u"x\0y,z"s, u",", {u"x\0y"s, u"z"}},
                      {"long separators", u"a" + longText + longText, longText, {u"a", u""}}};
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
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

TEST(VynUStringList, ChangesAreMadeWholeOrNotAtAllAndMayTakeOwnElements) {
    std::string const done = "done", badIndex = "out_of_range: invalid string list index given";
    Texts const abc = {u"a", longText, u"c"};
    VynUStringList const two = listOf({u"x", longText}), none;
    struct {
        char const* name;
        std::function<void(VynUStringList&)> change;
        std::string outcome;
        Texts after;
    } const rows[] = {
        {"own element", [](auto& l) { l = l.at(2); }, done, {u"c"}},
        {"other list", [&](auto& l) { l = two; }, done, {u"x", longText}},
        {"itself", [](auto& l) { l = *&l; }, done, abc},
        {"moved list", [](auto& l) { l = VynUStringList(VynUString("m")); }, done, {u"m"}},
        {"moved itself", [](auto& l) { l = std::move(*&l); }, done, abc},
        {"at the end", [](auto& l) { l.at(3); }, badIndex, abc},
        {"erase first", [](auto& l) { l.erase(0); }, done, {longText, u"c"}},
        {"erase last", [](auto& l) { l.erase(2); }, done, {u"a", longText}},
        {"erase past the end", [](auto& l) { l.erase(3); }, badIndex, abc},
        {"append own", [](auto& l) { l.append(l[1]); }, done, {u"a", longText, u"c", longText}},
        {"append list", [&](auto& l) { l.append(two); }, done, {u"a", longText, u"c", u"x", longText}},
        {"append itself", [](auto& l) { l.append(l); }, done, abc},
        {"insert own", [](auto& l) { l.insert(0, l[1]); }, done, {longText, u"a", longText, u"c"}},
        {"insert at the end", [](auto& l) { l.insert(3, l[1]); }, done, {u"a", longText, u"c", longText}},
        {"insert past the end", [](auto& l) { l.insert(4, l[0]); }, badIndex, abc},
        {"insert list", [&](auto& l) { l.insert(1, two); }, done, {u"a", u"x", longText, longText, u"c"}},
        {"insert itself", [](auto& l) { l.insert(1, l); }, done, abc},
        {"insert list past the end", [&](auto& l) { l.insert(4, two); }, badIndex, abc},
        {"insert an empty list anywhere", [&](auto& l) { l.insert(4, none); }, done, abc},
        {"clear", [](auto& l) { l.clear(); }, done, {}},
        {"elements", [](auto& l) { l.begin()->erase(), l.rbegin()->toUpper(true); }, done, {u"", longText, u"C"}},
    };
    for (auto const& row : rows)
        for (bool const withRoom : {false, true}) {
            SCOPED_TRACE(testing::Message() << row.name << (withRoom ? ", with room" : ""));
            VynUStringList list = listOf(abc);
            if (withRoom) // for a change in place
                list.append(two).append(two).erase(6).erase(5).erase(4).erase(3);
            else
                list = VynUStringList(list);
            std::string outcome;
            exhaustMemory([&] { outcome = outcomeOf([&] { row.change(list); }); },
                          [&] { EXPECT_EQ(textsOf(list), abc); });
            EXPECT_EQ(outcome, row.outcome);
            EXPECT_EQ(textsOf(list), row.after);
            VynUStringList const moved(std::move(list));
            EXPECT_EQ(textsOf(moved), row.after);
            EXPECT_EQ(list.size(), 0u);
        }
}

} // namespace

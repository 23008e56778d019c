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

TEST(VynUStringList, SplitsAtUnitsAndStrings) {
    using namespace std::string_literals;
    struct {
        std::u16string text, separator;
        Texts fields;
    } const rows[] = {
        {u",a,,b,", u",", {u"", u"a", u"", u"b"}},
        {u"a", u",", {u"a"}},
        {u"", u",", {}},
        {u",", u",", {u""}},
        {u",,", u",", {u"", u""}},
        {u"", u"", {u""}},
        {u"a,b", u"", {u"a,b"}},
        {u"a--b", u"--", {u"a", u"b"}},
        {u"a---b", u"--", {u"a", u"-b"}},
        {u"----", u"--", {u"", u""}},
        {u"-", u"--", {u"-"}},
        {u"a-", u"--", {u"a-"}},
        {u"x\0y,z"s, u",", {u"x\0y"s, u"z"}},
        {u"\xD83D\xDE00\xD83D", u"\xD83D", {u"", u"\xDE00"}}, // units, not characters
        {longText + u"\x3001" + longText + longText, u"\x3001", {longText, longText + longText}},
    };
    for (auto const& row : rows) {
        VynUString const text = makeString(row.text), separator = makeString(row.separator);
        EXPECT_EQ(textsOf(text.split(separator)), row.fields) << text;
        if (row.separator.size() <= 1) {
            EXPECT_EQ(textsOf(text.split(separator.data()[0])), row.fields) << text;
        }
        if (row.separator == u",") {
            EXPECT_EQ(textsOf(text.split(',', VYNCS_UTF8)), row.fields) << text;
        }
        bool const endsWithSeparator = !row.separator.empty() && text.length() >= separator.length() &&
                                       textOf(text.mid(text.length() - separator.length())) == row.separator;
        EXPECT_EQ(textOf(text.split(separator).combine(separator)) + (endsWithSeparator ? row.separator : u""),
                  row.text);
    }
    VynUString const itself = makeString(u"aa");
    EXPECT_EQ(textsOf(itself.split(itself)), Texts{u""});
}

TEST(VynUStringList, ChangesAreCheckedAndMayTakeTheirOwnElements) {
    std::string const done = "done", badIndex = "out_of_range: invalid string list index given";
    Texts const abc = {u"a", longText, u"c"};
    VynUStringList const two = listOf({u"x", u"y"});
    struct {
        char const* name;
        std::function<void(VynUStringList&)> change;
        std::string outcome;
        Texts after;
    } const rows[] = {
        {"at in range", [](auto& l) { EXPECT_EQ(textOf(l.at(2)), u"c"); }, done, abc},
        {"at the end", [](auto& l) { l.at(3); }, badIndex, abc},
        {"erase first",
         [](auto& l) {
             expectAbandoned(l[1]);
             l.erase(0).erase(1);
         },
         done,
         {longText}},
        {"erase to nothing", [](auto& l) { l.erase(2).erase(1).erase(0); }, done, {}},
        {"erase at the end", [](auto& l) { l.erase(3); }, badIndex, abc},
        {"append own element",
         [](auto& l) { l.append(l[1]).append(l[0]); },
         done,
         {u"a", longText, u"c", longText, u"a"}},
        {"append list", [&](auto& l) { l.append(two); }, done, {u"a", longText, u"c", u"x", u"y"}},
        {"append itself", [](auto& l) { l.append(l); }, done, abc},
        {"insert own element",
         [](auto& l) { l.insert(0, l[2]).insert(4, l[2]); },
         done,
         {u"c", u"a", longText, u"c", longText}},
        {"insert beyond the end", [](auto& l) { l.insert(4, l[0]); }, badIndex, abc},
        {"insert list", [&](auto& l) { l.insert(1, two); }, done, {u"a", u"x", u"y", longText, u"c"}},
        {"insert list at the end", [&](auto& l) { l.insert(3, two); }, done, {u"a", longText, u"c", u"x", u"y"}},
        {"insert list beyond the end", [&](auto& l) { l.insert(4, two); }, badIndex, abc},
        {"insert nothing beyond the end", [](auto& l) { l.insert(9, VynUStringList()); }, done, abc},
        {"insert itself", [](auto& l) { l.insert(1, l); }, done, abc},
        {"assign own element", [](auto& l) { l = l[1]; }, done, {longText}},
        {"assign list", [&](auto& l) { l = two; }, done, {u"x", u"y"}},
        {"assign itself",
         [](auto& l) {
             auto const& same = l;
             l = same;
         },
         done, abc},
        {"clear", [](auto& l) { l.clear(); }, done, {}},
        {"change through iterators",
         [](auto& l) {
             l.begin()->erase();
             l.rbegin()->toUpper(true);
         },
         done,
         {u"", longText, u"C"}},
    };
    for (auto const& row : rows) {
        VynUStringList list = listOf(abc);
        EXPECT_EQ(outcomeOf([&] { row.change(list); }), row.outcome) << row.name;
        EXPECT_EQ(textsOf(list), row.after) << row.name;
        EXPECT_EQ(textsOf(VynUStringList(list)), row.after) << row.name;
        EXPECT_EQ(list.size(), row.after.size()) << row.name;
    }
}

TEST(VynUStringList, CombinesWhatRepeatedAppendingGives) {
    Texts const lists[] = {{}, {u""}, {longText}, {u"a", u"", u"b"}, {u"", u""}, {longText, u"b", longText}};
    for (Texts const& texts : lists)
        for (std::u16string const& separator : {std::u16string(), std::u16string(u","), longText}) {
            VynUString appended;
            for (std::size_t i = 0; i < texts.size(); ++i) {
                appended.replace(appended.length(), 0, makeString(i > 0 ? separator : u""), 0);
                appended.replace(appended.length(), 0, makeString(texts[i]), 0);
            }
            VynUString const combined = listOf(texts).combine(makeString(separator));
            EXPECT_EQ(textOf(combined), textOf(appended));
            EXPECT_EQ(combined.capacity(), appended.capacity());
        }
}

} // namespace

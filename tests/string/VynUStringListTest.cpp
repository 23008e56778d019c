#include "tests/string/StringTestKit.h"

#include <vynulib/VynUStringList.h>

#include <functional>
#include <utility>

namespace {

using Texts = std::vector<Text>;

Texts textsOf(VynUStringList const& list) {
    Texts texts;
    for (VynUString const& element : list)
        texts.push_back(textOf(element));
    return texts;
}

VynUStringList listOf(Texts const& texts) {
    VynUStringList list;
    for (Text const& text : texts)
        list.append(makeString(text));
    return list;
}

Text const longText(300, u'L'), longerText(400, u'M'); // do not fit inside a string object, nor into each other

TEST(VynUStringList, SplitsAtUnitsAndStringsAndCombinesAgain) {
    struct {
        Text text, separator;
        Texts fields;
    } const rows[] = {{u",a,,b,", u",", {u"", u"a", u"", u"b"}}, // no empty field after the last separator
                      {u"", u",", {}},
                      {u"", u"", {u""}},
                      {u"a,b", u"", {u"a,b"}},
                      {u"a---b", u"--", {u"a", u"-b"}},
                      {u"x\0y,z"s, u",", {u"x\0y"s, u"z"}},
                      {u"a" + longText + longText + u"b", longText, {u"a", u"", u"b"}}};
    for (auto const& [text, separator, fields] : rows) {
        SCOPED_TRACE(testing::PrintToString(text) + " at " + testing::PrintToString(separator));
        VynUString const whole = makeString(text), between = makeString(separator);
        EXPECT_EQ(textsOf(whole.split(between)), fields);
        EXPECT_EQ(textsOf(separator.size() < 2 ? whole.split(*between.data()) : whole.split(between)), fields);
        VynUString const combined = listOf(fields).combine(between);
        EXPECT_EQ(combined.capacity(), VynUString(combined).capacity());
        EXPECT_EQ(textOf(combined) + (text.ends_with(u',') ? u"," : u""), text);
    }
}

TEST(VynUStringList, ChangesAreMadeWholeOrNotAtAllAndMayTakeOwnElements) {
    std::string const done = "done", badIndex = "out_of_range: invalid string list index given";
    Texts const abc = {u"a", longText, u"c"};
    VynUStringList const two = listOf({u"x", longerText}), none;
    struct {
        char const* name;
        std::function<void(VynUStringList&)> change;
        std::string outcome;
        Texts after;
    } const rows[] = {
        {"own element", [](auto& l) { l = l.at(2); }, done, {u"c"}},
        {"other list", [&](auto& l) { l = two; }, done, {u"x", longerText}},
        {"moved itself", [](auto& l) { l = std::move(*&l); }, done, abc},
        {"at the end", [](auto& l) { l.at(3); }, badIndex, abc},
        {"erase first", [](auto& l) { l.erase(0); }, done, {longText, u"c"}},
        {"erase past the end", [](auto& l) { l.erase(3); }, badIndex, abc},
        {"append own", [](auto& l) { l.append(l[1]); }, done, {u"a", longText, u"c", longText}},
        {"append list", [&](auto& l) { l.append(two); }, done, {u"a", longText, u"c", u"x", longerText}},
        {"append itself", [](auto& l) { l.append(l); }, done, abc},
        {"insert own", [](auto& l) { l.insert(0, l[1]); }, done, {longText, u"a", longText, u"c"}},
        {"insert past the end", [](auto& l) { l.insert(4, l[0]); }, badIndex, abc},
        {"insert list", [&](auto& l) { l.insert(1, two); }, done, {u"a", u"x", longerText, longText, u"c"}},
        {"insert list past the end", [&](auto& l) { l.insert(4, two); }, badIndex, abc},
        {"insert an empty list anywhere", [&](auto& l) { l.insert(4, none); }, done, abc},
    };
    for (auto const& row : rows)
        for (bool const withRoom : {false, true}) {
            SCOPED_TRACE(testing::Message() << row.name << (withRoom ? ", with room" : ""));
            VynUStringList list = withRoom ? listOf(abc).append(two).append(two) : listOf(abc);
            while (list.size() > abc.size())
                list.erase(abc.size()); // leaves room for a change in place
            std::string outcome;
            expectWholeOrNothing([&] { outcome = outcomeOf([&] { row.change(list); }); },
                                 [&] { return textsOf(list); });
            EXPECT_EQ(outcome, row.outcome);
            EXPECT_EQ(textsOf(list), row.after);
            VynUStringList const moved(std::move(list));
            EXPECT_EQ(textsOf(moved), row.after);
            EXPECT_EQ(list.size(), 0u);
        }
}

} // namespace

#include "tests/string/StringTestKit.h"

#include <vynulib/VynUStringList.h>

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

Text const longText(300, u'L'); // does not fit inside a string object

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
        EXPECT_EQ(textOf(combined) + (text.ends_with(u',') ? u"," : u""), text);
    }
}

} // namespace

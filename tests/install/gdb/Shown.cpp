#include <vynulib/vynulib.h>

#include <string>

void stopHere() {}

int main() {
    using namespace std::string_literals;
    VynUString const empty, text(u"\u0416\u4E00 \"x\"\0z"s), longText(std::u16string(300, u'a') + u'!');
    VynUStringList list;
    list.append(text).append(empty);
    VynCharSet const named = VYNCS_KOI8R, unknown = static_cast<VynCharSet>(7);
    stopHere();
    return static_cast<int>(named + unknown + longText.length() == 0);
}

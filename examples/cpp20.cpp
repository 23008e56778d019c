// C++20: texts of char8_t, and ranges over strings.
#include <vynulib/Transcoding.h>
#include <vynulib/VynUStringList.h>

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace {

std::string_view bytesOf(std::u8string_view text) {
    return {reinterpret_cast<char const*>(text.data()), text.size()};
}

} // namespace

int main() {
    std::u16string const towns = vynulib::decode(VYNCS_UTF8, bytesOf(u8"Århus;Zürich;Łódź;Bern"));
    VynUStringList const list = VynUString(towns).split(u';');
    auto const fits = [](VynUString const& town) {
        vynulib::Report report;
        vynulib::encode(VYNCS_ISO_8859_1, town.view(), {}, &report);
        return report.losses == 0;
    };
    std::printf("%td of %lu towns can be written in ISO 8859-1\n", std::ranges::count_if(list, fits), list.size());
    auto const longest = std::ranges::max_element(list, {}, &VynUString::numChars);
    std::puts(vynulib::encode(VYNCS_UTF8, longest->view()).c_str());
}

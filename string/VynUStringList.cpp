#include <vynulib/VynUStringList.h>

#include <iterator>
#include <stdexcept>
#include <type_traits>
#include <utility>

// A sequence that grows or opens a gap moves its strings: it can't fail once it has the memory.
static_assert(std::is_nothrow_move_constructible_v<VynUString> && std::is_nothrow_move_assignable_v<VynUString>);

namespace {

[[noreturn]] void range_error() {
    throw std::out_of_range("invalid string list index given");
}

[[noreturn]] void length_error() {
    throw std::length_error("exceed maximum string list length");
}

// The fields of `text`. `separator` is what `find` looks for, and takes `separatorUnits` units. The fields are counted
// first: strings are large objects, which cost more to move to a larger sequence than to find.
template <class Separator>
std::vector<VynUString> fieldsOf(VynUString const& text, Separator const& separator, unsigned long separatorUnits) {
    std::vector<unsigned long> ends;
    unsigned long end = text.find(separator, 0);
    for (; end != VynUString::npos; end = text.find(separator, end + separatorUnits))
        ends.push_back(end);

    std::vector<VynUString> fields;
    fields.reserve(ends.size() + 1);
    unsigned long start = 0;
    for (unsigned long const fieldEnd : ends) {
        fields.emplace_back(text, start, fieldEnd - start);
        start = fieldEnd + separatorUnits;
    }
    if (start < text.length()) // deliberate: no empty field after the last separator
        fields.emplace_back(text, start);
    return fields;
}

} // namespace

VynUStringList::VynUStringList() noexcept = default;

VynUStringList::VynUStringList(VynUStringList const& other) = default;

VynUStringList::VynUStringList(VynUStringList&& other) noexcept = default;

VynUStringList::VynUStringList(VynUString const& text) : m_oStrings(1, text) {}

VynUStringList::VynUStringList(VynUString const& text, unsigned short separator)
    : m_oStrings(separator == 0 ? std::vector<VynUString>(1, text) : fieldsOf(text, separator, 1)) {}

VynUStringList::VynUStringList(VynUString const& text, VynUString const& separator)
    : m_oStrings(separator.empty() ? std::vector<VynUString>(1, text) : fieldsOf(text, separator, separator.length())) {
}

VynUStringList::~VynUStringList() = default;

VynUStringList& VynUStringList::operator=(VynUStringList const& other) {
    return *this = VynUStringList(other);
}

VynUStringList& VynUStringList::operator=(VynUStringList&& other) noexcept {
    VynUStringList(std::move(other)).m_oStrings.swap(m_oStrings);
    return *this;
}

VynUStringList& VynUStringList::operator=(VynUString const& text) {
    return *this = VynUStringList(text);
}

void VynUStringList::clear() noexcept {
    m_oStrings.clear();
}

VynUString const& VynUStringList::at(unsigned long index) const {
    if (index >= size())
        range_error();
    return m_oStrings[index];
}

VynUStringList& VynUStringList::erase(unsigned long index) {
    if (index >= size())
        range_error();
    m_oStrings.erase(m_oStrings.begin() + static_cast<std::ptrdiff_t>(index));
    return *this;
}

VynUStringList& VynUStringList::append(VynUString const& text) {
    requireRoomFor(1);
    m_oStrings.push_back(text);
    return *this;
}

VynUStringList& VynUStringList::append(VynUStringList const& other) {
    return insert(size(), other);
}

// Copies are made before anything moves, so that a list is whole where memory runs out.
VynUStringList& VynUStringList::insert(unsigned long index, VynUString const& text) {
    requireRoomFor(1);
    if (index > size())
        range_error();
    m_oStrings.insert(m_oStrings.begin() + static_cast<std::ptrdiff_t>(index), VynUString(text));
    return *this;
}

VynUStringList& VynUStringList::insert(unsigned long index, VynUStringList const& other) {
    if (&other == this || other.size() == 0)
        return *this;
    requireRoomFor(other.size());
    if (index > size())
        range_error();
    std::vector<VynUString> copies(other.m_oStrings);
    m_oStrings.insert(m_oStrings.begin() + static_cast<std::ptrdiff_t>(index), std::make_move_iterator(copies.begin()),
                      std::make_move_iterator(copies.end()));
    return *this;
}

VynUString VynUStringList::combine(VynUString const& separator) const {
    unsigned long units = size() == 0 ? 0 : (size() - 1) * separator.length();
    for (VynUString const& text : m_oStrings)
        units += text.length();

    VynUString result;
    result.AssureSpace(units); // one array, of the size that the appending would end with
    auto const append = [&result](VynUString const& text) {
        result.replace(result.length(), 0, text, 0, text.length());
    };
    for (unsigned long i = 0; i < size(); ++i) {
        if (i > 0)
            append(separator);
        append(m_oStrings[i]);
    }
    return result;
}

void VynUStringList::requireRoomFor(unsigned long count) const {
    if (max_size() - size() < count)
        length_error();
}

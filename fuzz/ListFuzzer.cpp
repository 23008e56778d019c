// A program of operations on a list of strings, beside the same on a list of plain texts; and fields of a text.

#include "fuzz/Input.h"
#include "fuzz/Require.h"

#include <vynulib/VynUStringList.h>

#include <stdexcept>
#include <vector>

namespace {

using Units = std::u16string;
using Texts = std::vector<Units>;

constexpr std::size_t mostElements = 200; // of a program, which would double them without end

/// A list and what it has to be.
struct Twin {
    VynUStringList list;
    Texts model;
};

/// What an operation works on: `other` may be `target` itself.
struct Operands {
    Twin& target;
    Twin& other;
    Input& input;

    /// Of the target, its end or a little beyond.
    std::size_t index() const { return input.upTo(target.model.size() + 2); }
    std::ptrdiff_t offset(std::size_t index) const { return static_cast<std::ptrdiff_t>(index); }
};

/// Whether `change` throws what says that an index is none.
template <class Change>
bool isRangeError(Change change) {
    try {
        change();
        return false;
    } catch (std::out_of_range const&) {
        return true;
    }
}

Units joined(Texts const& texts, Units const& separator) {
    Units result;
    for (std::size_t i = 0; i < texts.size(); ++i)
        result += (i == 0 ? Units() : separator) + texts[i];
    return result;
}

/// Each separator ends a field, and what follows the last one is a field where it is not empty.
Texts fieldsOf(Units const& text, Units const& separator) {
    if (separator.empty())
        return {text};
    Texts fields;
    std::size_t start = 0;
    for (std::size_t at; (at = text.find(separator, start)) != text.npos; start = at + separator.size())
        fields.push_back(text.substr(start, at - start));
    if (start < text.size())
        fields.push_back(text.substr(start));
    return fields;
}

void append(Operands const& on) {
    Units const text = on.input.word();
    on.target.list.append(VynUString(std::u16string_view(text)));
    on.target.model.push_back(text);
}

void appendList(Operands const& on) {
    if (&on.target != &on.other && on.target.model.size() + on.other.model.size() > mostElements)
        return;
    on.target.list.append(on.other.list);
    if (&on.target != &on.other) // itself: it stays as it is
        on.target.model.insert(on.target.model.end(), on.other.model.begin(), on.other.model.end());
}

void insert(Operands const& on) {
    std::size_t const index = on.index();
    Units const text = on.input.word();
    bool const threw = isRangeError([&] { on.target.list.insert(index, VynUString(std::u16string_view(text))); });
    require(threw == (index > on.target.model.size()), "insert refuses an index past the end", index);
    if (!threw)
        on.target.model.insert(on.target.model.begin() + on.offset(index), text);
}

void insertElement(Operands const& on) {
    if (on.target.model.empty())
        return;
    std::size_t const last = on.target.model.size() - 1;
    std::size_t const index = std::min(on.index(), last), from = std::min(on.index(), last);
    Units const text = on.target.model[from];
    on.target.list.insert(index, on.target.list[from]);
    on.target.model.insert(on.target.model.begin() + on.offset(index), text);
}

void insertList(Operands const& on) {
    std::size_t const index = on.index();
    bool const same = &on.target == &on.other;
    if (!same && on.target.model.size() + on.other.model.size() > mostElements)
        return;
    bool const threw = isRangeError([&] { on.target.list.insert(index, on.other.list); });
    require(threw == (index > on.target.model.size() && !same && !on.other.model.empty()),
            "insert of a list refuses an index past the end", index);
    if (!threw && !same && !on.other.model.empty())
        on.target.model.insert(on.target.model.begin() + on.offset(index), on.other.model.begin(),
                               on.other.model.end());
}

void erase(Operands const& on) {
    std::size_t const index = on.index();
    bool const threw = isRangeError([&] { on.target.list.erase(index); });
    require(threw == (index >= on.target.model.size()), "erase refuses an index past the last", index);
    if (!threw)
        on.target.model.erase(on.target.model.begin() + on.offset(index));
}

void look(Operands const& on) {
    std::size_t const index = on.index();
    bool const threw = isRangeError([&] { (void)on.target.list.at(index); });
    require(threw == (index >= on.target.model.size()), "at refuses an index past the last", index);
}

void assignOther(Operands const& on) {
    on.target.list = on.other.list;
    on.target.model = on.other.model;
}

void moveOther(Operands const& on) {
    if (&on.target == &on.other)
        return;
    on.target.list = std::move(on.other.list);
    on.target.model = std::move(on.other.model);
    on.other.model.clear();
}

void assignElement(Operands const& on) {
    if (on.target.model.empty())
        return;
    std::size_t const from = std::min(on.index(), on.target.model.size() - 1);
    on.target.list = on.target.list[from];
    on.target.model = Texts{Units(on.target.model[from])};
}

void clear(Operands const& on) {
    on.target.list.clear();
    on.target.model.clear();
}

/// All elements as one text, and its fields.
void splitAtText(Operands const& on) {
    Units const separator = on.input.word();
    if (separator.find(u'\0') != separator.npos)
        return; // what follows a zero is not looked for
    Units const text = joined(on.other.model, separator);
    VynUString const combined = on.other.list.combine(VynUString(std::u16string_view(separator)));
    require(combined.view() == text, "the elements with separators between them");
    on.target.list = combined.split(VynUString(std::u16string_view(separator)));
    on.target.model = fieldsOf(text, separator);
}

void splitAtUnit(Operands const& on) {
    Units const separator(1, on.input.unit());
    Units const text = on.input.word();
    on.target.list = VynUString(std::u16string_view(text)).split(separator[0]);
    on.target.model = fieldsOf(text, separator[0] == 0 ? Units() : separator);
}

constexpr void (*operations[])(Operands const&) = {append, appendList,  insert,      insertElement, insertList,
                                                   erase,  look,        assignOther, moveOther,     assignElement,
                                                   clear,  splitAtText, splitAtUnit};

void requireTwins(Twin const& twin, std::size_t operation) {
    bool const same = std::equal(twin.list.begin(), twin.list.end(), twin.model.begin(), twin.model.end(),
                                 [](VynUString const& got, Units const& expected) { return got.view() == expected; });
    require(same, "the list is as its model after operation", operation, "elements", twin.list.size(), "expected",
            twin.model.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    Twin twins[2];
    for (int steps = 0; steps < 40 && !input.empty(); ++steps) {
        std::size_t const operation = input.upTo(std::size(operations) - 1), pair = input.upTo(3);
        operations[operation]({twins[pair % 2], twins[pair / 2], input});
        for (Twin const& twin : twins)
            requireTwins(twin, operation);
    }
    return 0;
}

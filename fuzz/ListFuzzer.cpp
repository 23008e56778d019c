// A program of operations on a list of strings, beside the same on a list of plain texts; and fields of a text.

#include "fuzz/Input.h"
#include "fuzz/Require.h"

#include <vynulib/VynUStringList.h>

#include <utility>
#include <vector>

namespace {

using Units = std::u16string;
using View = std::u16string_view;
using Texts = std::vector<Units>;

constexpr std::size_t mostElements = 200; // of a program, which would double them without end
constexpr char badIndex[] = "invalid string list index given";

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

    VynUStringList& list() const { return target.list; }
    Texts& model() const { return target.model; }
    bool same() const { return &target == &other; }
    bool fits() const { return same() || model().size() + other.model.size() <= mostElements; }

    /// Of the target, its end or a little beyond.
    std::size_t index() const { return input.upTo(model().size() + 2); }
    Texts::iterator at(std::size_t index) const { return model().begin() + static_cast<std::ptrdiff_t>(index); }
};

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

constexpr void (*operations[])(Operands const&) = {
    [](Operands const& on) {
        Units const text = on.input.word();
        on.list().append(VynUString(View(text)));
        on.model().push_back(text);
    },
    [](Operands const& on) { // itself: it stays as it is
        if (!on.fits())
            return;
        on.list().append(on.other.list);
        if (!on.same())
            on.model().insert(on.model().end(), on.other.model.begin(), on.other.model.end());
    },
    [](Operands const& on) {
        std::size_t const index = on.index();
        Units const text = on.input.word();
        if (changes(index <= on.model().size(), badIndex, [&] { on.list().insert(index, VynUString(View(text))); }))
            on.model().insert(on.at(index), text);
    },
    [](Operands const& on) { // an element of its own
        if (on.model().empty())
            return;
        std::size_t const last = on.model().size() - 1;
        std::size_t const index = std::min(on.index(), last), from = std::min(on.index(), last);
        Units const text = on.model()[from];
        on.list().insert(index, on.list()[from]);
        on.model().insert(on.at(index), text);
    },
    [](Operands const& on) { // itself or an empty list: wherever, it stays as it is
        std::size_t const index = on.index();
        bool const nothing = on.same() || on.other.model.empty();
        if (on.fits() &&
            changes(index <= on.model().size() || nothing, badIndex, [&] { on.list().insert(index, on.other.list); }) &&
            !nothing)
            on.model().insert(on.at(index), on.other.model.begin(), on.other.model.end());
    },
    [](Operands const& on) {
        std::size_t const index = on.index();
        if (changes(index < on.model().size(), badIndex, [&] { on.list().erase(index); }))
            on.model().erase(on.at(index));
    },
    [](Operands const& on) {
        std::size_t const index = on.index();
        changes(index < on.model().size(), badIndex, [&] { (void)on.list().at(index); });
    },
    [](Operands const& on) {
        on.list() = on.other.list;
        on.model() = on.other.model;
    },
    [](Operands const& on) {
        VynUStringList taken(std::move(on.other.list));
        require(on.other.list.size() == 0, "nothing is left of a list that was moved");
        on.list() = std::move(taken);
        if (!on.same())
            on.model() = std::exchange(on.other.model, {});
    },
    [](Operands const& on) {
        if (on.model().empty())
            return;
        std::size_t const from = std::min(on.index(), on.model().size() - 1);
        on.list() = on.list()[from];
        on.model() = Texts{Units(on.model()[from])};
    },
    [](Operands const& on) {
        on.list().clear();
        on.model().clear();
    },
    [](Operands const& on) { // all elements as one text, and its fields
        Units const separator = on.input.word();
        if (separator.find(u'\0') != separator.npos)
            return; // what follows a zero is not looked for
        Units const text = joined(on.other.model, separator);
        VynUString const between(View{separator}), combined = on.other.list.combine(between);
        require(combined.view() == text, "the elements with separators between them");
        require(combined.capacity() == VynUString(combined).capacity(), "in room that just fits", combined.capacity());
        on.list() = combined.split(between);
        on.model() = fieldsOf(text, separator);
    },
    [](Operands const& on) {
        Units const separator(1, on.input.unit());
        Units const text = on.input.word();
        on.list() = VynUString(View(text)).split(separator[0]);
        on.model() = fieldsOf(text, separator[0] == 0 ? Units() : separator);
    },
};

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

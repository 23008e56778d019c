// The counts of every converter, of terminated texts and of bounded ones, against the plain reference and against what
// the conversion makes.

#include "fuzz/ConverterSubject.h"
#include "fuzz/Require.h"

namespace {

void requireSame(unsigned long got, unsigned long expected, char const* what, ConverterSubject const& subject) {
    require(got == expected, what, VynCharSetToString(subject.set.cs), "got", got, "expected", expected);
}

/// Not UTF-8 and EUC-JP, which end at what a sequence lacks, UTF-32, where a pair counts one, and UTF-16, which converts
/// nothing without a limit.
bool countsWhatItDecodes(ConverterSubject const& subject) {
    Form const form = subject.set.form;
    return form != Form::Utf8 && form != Form::EucJp && form != Form::Utf32 && form != Form::Utf16;
}

/// The elements before the first zero element, where the text ends; `size` is in items of `Text`.
template <class Text>
Text terminatedPart(Text const& text, std::size_t size = 1) {
    auto end = text.begin();
    auto const step = static_cast<std::ptrdiff_t>(size);
    while (end != text.end() && std::any_of(end, end + step, [](auto item) { return item != 0; }))
        end += step;
    return Text(text.begin(), end);
}

void countUnits(ConverterSubject& subject, Bytes const& bytes, std::size_t bound) {
    unsigned long const whole = subject.kit.countUnits(bytes);
    requireSame(whole, subject.reference.countUnits(terminatedPart(bytes, subject.converter.getMinUnitSize())),
                "the units of a terminated text", subject);
    if (countsWhatItDecodes(subject))
        requireSame(whole, subject.kit.decode(bytes, ampleFor(bytes)).output.size(), "the units converted", subject);

    Bytes const bounded(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(bound));
    unsigned long const expected = subject.reference.countUnits(bounded);
    requireSame(subject.kit.countUnits(bounded, false), expected, "the units of a text that ends with its memory",
                subject);
    if (bound != 0 && bound < bytes.size())
        requireSame(subject.converter.getNumUnits(bytes.data(), bound), expected, "the units before a bound", subject);
}

void countBytes(ConverterSubject& subject, Units units, std::size_t bound) {
    unsigned long const whole = subject.kit.countBytes(units);
    requireSame(whole, subject.reference.countBytes(terminatedPart(units)), "the bytes of a terminated text", subject);

    Units const bounded(units.begin(), units.begin() + static_cast<std::ptrdiff_t>(bound));
    unsigned long const expected = subject.reference.countBytes(terminatedPart(bounded));
    requireSame(subject.kit.countBytes(bounded, false), expected, "the bytes of a text that ends with its memory",
                subject);
    if (bound != 0 && bound < units.size())
        requireSame(subject.converter.getNumBytes(units.data(), bound), expected, "the bytes before a bound", subject);

    units = terminatedPart(units);
    units.push_back('a'); // a high surrogate at the end is converted and not counted
    requireSame(subject.kit.countBytes(units), subject.kit.encode(units, ampleFor(units)).output.size(),
                "the bytes converted", subject);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    endProcessAtFailures(argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    ConverterSubject& subject = subjectOf(input);
    bool const ofUnits = input.flag();
    Place const bound = input.place();
    if (ofUnits) {
        std::u16string const text = input.units();
        countBytes(subject, Units(text.begin(), text.end()), std::min(text.size(), bound.in(text.size())));
    } else {
        Bytes const bytes = subject.bytes(input.text());
        countUnits(subject, bytes, std::min(bytes.size(), bound.in(bytes.size())));
    }
    return 0;
}

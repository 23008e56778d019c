// Both directions of every converter, in guarded memory, against the plain reference: output, flag, room, terminator.

#include "fuzz/ConverterSubject.h"
#include "fuzz/Require.h"

#include <climits>

namespace {

constexpr int noLimit = INT_MAX; // a source limit, never met: it keeps a byte set's decoder on its literal path

Call anyCall(Input& input) {
    return {.op = input.among(policies),
            .offset = static_cast<int>(input.upTo(64)) - 1,
            .withFlag = !input.flag(),
            .terminated = true};
}

template <class Result>
void requireSame(Result const& got, Result const& expected, char const* what, ConverterSubject const& subject,
                 unsigned long room, Call const& call) {
    require(got == expected, what, VynCharSetToString(subject.set.cs), "room", room, "limit", call.maxSrc, "policy",
            call.op, "got", got, "expected", expected);
}

/// A source whose last characters look at nothing behind them may end with its memory where the room ends it.
void decodeUnterminated(ConverterSubject& subject, Input& input) {
    Call call = anyCall(input);
    call.maxSrc = input.flag() || subject.set.form == Form::Utf16 ? noLimit : -1;
    call.offset = -1;
    call.terminated = false;
    Bytes bytes = subject.bytes(input.text());
    bytes.insert(bytes.end(), 4, 'a');
    auto const whole = subject.reference.decode(bytes, ampleFor(bytes), call);
    unsigned long const room = whole.output.size();
    if (call.op != ILLCHAR_STOP || !whole.illegal)
        requireSame(subject.kit.decode(bytes, room, call), subject.reference.decode(bytes, room, call),
                    "decode without a terminator", subject, room, call);
}

void decode(ConverterSubject& subject, Input& input) {
    Call call = anyCall(input);
    bool const limited = input.flag();
    Place const limit = input.place(), end = input.place();
    Bytes const bytes = subject.bytes(input.text());
    if (limited)
        call.maxSrc = static_cast<int>(limit.in(bytes.size()));
    unsigned long const room = end.in(subject.reference.decode(bytes, ampleFor(bytes), call).output.size());

    auto const got = subject.kit.decode(bytes, room, call);
    requireSame(got, subject.reference.decode(bytes, room, call), "decode", subject, room, call);
    if (call.maxSrc < 0 && subject.set.form != Form::Utf16) {
        call.maxSrc = noLimit;
        requireSame(subject.kit.decode(bytes, room, call), got, "the literal path", subject, room, call);
    }
}

/// Not 936 and 950, which encode codes that they do not decode.
bool decodesWhatItEncodes(ConverterSubject const& subject) {
    bool const isTable = std::ranges::find(unicodeSets, subject.set.cs, &ReferenceSet::cs) == std::end(unicodeSets);
    return isTable && subject.set.cs != VYNCS_WCP936 && subject.set.cs != VYNCS_WCP950;
}

void decodeEncoded(ConverterSubject& subject, Units const& units) {
    Bytes const bytes = subject.kit.encode(units, ampleFor(units), {.op = ILLCHAR_STOP}).output;
    auto const decoded = subject.kit.decode(bytes, ampleFor(bytes));
    bool const same = decoded.output.size() <= units.size() &&
                      std::equal(decoded.output.begin(), decoded.output.end(), units.begin());
    require(same && !decoded.illegal, "what was encoded decodes", VynCharSetToString(subject.set.cs), decoded);
    require(subject.kit.encode(decoded.output, ampleFor(units)).output == bytes, "all of it decodes",
            VynCharSetToString(subject.set.cs), decoded);
}

/// Each escape is charged five of its six bytes, and takes the unit after it along, even a terminator.
void escapeInUtf8(ConverterSubject& subject, Units units, unsigned long room) {
    auto const escapes = static_cast<unsigned long>(
        std::ranges::count_if(units, [](unsigned short unit) { return unit >= 0xD800 && unit < 0xDC00; }));
    units.resize(units.size() + 2);
    std::vector<unsigned char> dst(room + escapes + 1);
    bool illegal = false;
    unsigned long const count = subject.converter.fromUTF16(dst.data(), units.data(), room, ILLCHAR_ESCAPE, &illegal);
    require(count <= room + escapes && dst[count] == 0, "escapes end in their room", count, room);
    dst.resize(count);

    auto const stopped = subject.reference.encode(units, room, {.op = ILLCHAR_STOP});
    require(
        std::equal(stopped.output.begin(),
                   stopped.output.begin() + static_cast<std::ptrdiff_t>(std::min(stopped.output.size(), dst.size())),
                   dst.begin()) &&
            stopped.output.size() <= dst.size() && stopped.illegal == illegal,
        "up to the first escape all policies agree", count, room);
}

void encode(ConverterSubject& subject, Input& input) {
    Call const call = anyCall(input);
    Place const end = input.place();
    std::u16string const text = input.units();
    Units const units(text.begin(), text.end());
    unsigned long const room = end.in(subject.reference.encode(units, ampleFor(units), call).output.size());
    if (subject.set.form == Form::Utf8 && call.op == ILLCHAR_ESCAPE)
        escapeInUtf8(subject, units, room);
    else
        requireSame(subject.kit.encode(units, room, call), subject.reference.encode(units, room, call), "encode",
                    subject, room, call);
    if (decodesWhatItEncodes(subject))
        decodeEncoded(subject, units);
}

constexpr void (*tests[])(ConverterSubject&, Input&) = {decode, encode, decodeUnterminated};

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    endProcessAtFailures(argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    ConverterSubject& subject = subjectOf(input);
    input.among(tests)(subject, input);
    return 0;
}

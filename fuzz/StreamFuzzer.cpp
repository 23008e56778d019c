// Strings read from a stream of any bytes, one after the other with changing readers, and written again. The bytes are in
// the default set, that of LANG.

#include "fuzz/Input.h"
#include "fuzz/Require.h"

#include <vynulib/VynCharSetConverter.h>
#include <vynulib/VynUString.h>

#include <iomanip>
#include <sstream>

namespace {

constexpr char endOfInput = '\xFF'; // the byte, as well as the end itself
constexpr std::string_view spaces = " \t\n\v\f\r";
constexpr std::ios_base::iostate states[] = {std::ios_base::goodbit, std::ios_base::failbit,
                                             std::ios_base::eofbit | std::ios_base::badbit};

struct FlushCounter : std::streambuf {
    int sync() override { return ++flushes, 0; }
    int flushes = 0;
};

/// What a reader has to take from the bytes that are left, and the state that it has to leave.
struct Expected {
    std::string bytes;
    std::size_t taken = 0; ///< From the stream, where it counts: behind the end of input nothing is looked at.
    std::ios_base::iostate state = std::ios_base::goodbit;

    /// Stores up to `limit` bytes of `rest` before one of `ends`.
    void gather(std::string_view rest, std::size_t limit, std::string_view ends) {
        while (bytes.size() < limit) {
            if (taken == rest.size() || rest[taken] == endOfInput) {
                state |= std::ios_base::eofbit;
                return;
            }
            if (ends.find(rest[taken]) != ends.npos)
                return;
            bytes += rest[taken++];
        }
    }
};

Expected expectedWord(std::string_view rest, std::size_t limit) {
    Expected word;
    if (limit != 0)
        word.taken = std::min(rest.find_first_not_of(spaces), rest.size());
    word.gather(rest, limit, spaces);
    return word;
}

Expected expectedLine(std::string_view rest, std::size_t limit, char delimiter) {
    Expected line;
    line.gather(rest, limit, std::string_view(&delimiter, 1));
    bool const atDelimiter = line.bytes.size() < limit && line.state == std::ios_base::goodbit;
    line.taken += atDelimiter ? 1 : 0;
    return line;
}

VynUString textOf(std::string bytes) {
    std::size_t const size = bytes.size();
    bytes.append(4, '\0'); // the widest terminator
    return VynUString(bytes.data(), size);
}

/// Up to the first zero, as the conversion writes it.
std::string written(VynUString text) {
    return text.c_str();
}

void readOne(std::istringstream& stream, std::string_view& rest, Input& input) {
    unsigned const choice = input.byte();
    int const width = choice % 2 != 0 ? static_cast<int>(input.upTo(20)) : -static_cast<int>(choice / 2 % 4);
    std::size_t const limit = width <= 0 ? std::string::npos : static_cast<std::size_t>(width) - 1;
    std::ios_base::iostate const before = states[choice / 8 % std::size(states)];
    char const delimiter = static_cast<char>(input.byte());
    std::size_t const reader = input.upTo(2);
    FlushCounter counter;
    std::ostream tied(&counter);
    stream.tie(&tied);
    stream.clear(before);
    stream.width(width);
    VynUString text(u"of before");
    if (reader == 0)
        stream >> text;
    else if (reader == 1)
        getline(stream, text, delimiter);
    else
        getline(stream, text);
    Expected expected =
        reader == 0 ? expectedWord(rest, limit) : expectedLine(rest, limit, reader == 1 ? delimiter : '\r');
    if (expected.bytes.empty())
        expected.state |= std::ios_base::failbit;

    stream.tie(nullptr);
    require(counter.flushes == 1, "what is tied to the stream is flushed first", counter.flushes);
    require(stream.rdstate() == (expected.state | before), "the state of the stream", stream.rdstate(), "expected",
            expected.state, "and", before);
    require(stream.width() == 0, "the width is reset");
    require(text.view() == textOf(expected.bytes).view(), "the text read", reader);
    rest.remove_prefix(expected.taken);
    stream.clear();
    require(static_cast<std::size_t>(stream.rdbuf()->in_avail() > 0 ? stream.rdbuf()->in_avail() : 0) == rest.size(),
            "what is left in the stream", reader);

    std::ostringstream out, outExpected;
    out << std::setw(width) << std::setfill('*') << text;
    outExpected << std::setw(width) << std::setfill('*') << written(text);
    require(out.str() == outExpected.str(), "the text written");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input choices(data, std::min<std::size_t>(size, 24));
    Input input(data + std::min<std::size_t>(size, 24), size - std::min<std::size_t>(size, 24));
    std::string const bytes = input.text();
    std::istringstream stream(bytes);
    std::string_view rest = bytes;
    while (!choices.empty())
        readOne(stream, rest, choices);
    return 0;
}

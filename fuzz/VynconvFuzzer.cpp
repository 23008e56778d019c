// The command's conversion of an input that arrives in pieces: the same whatever they are, and that of the whole text.

#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "tests/support/ServedSets.h"

#include "tools/vynconv/Failure.h"
#include "tools/vynconv/Input.h"
#include "tools/vynconv/Messages.h"
#include "tools/vynconv/Output.h"
#include "tools/vynconv/Progress.h"
#include "tools/vynconv/Transcoder.h"

#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using vynconv::InputSet;
using vynconv::Losses;
using vynulib::OnError;

constexpr OnError policies[] = {OnError::stop, OnError::replace, OnError::escape, OnError::drop};
constexpr std::size_t mostPieces = 100; // that the socket takes before they are read

void requireDone(bool done, char const* what) {
    if (!done)
        vynconv::failWithErrno(what);
}

/// What standard input reads: each piece by itself, whatever room the reader has, and then the end.
class PiecewiseInput {
public:
    PiecewiseInput() {
        int ends[2];
        requireDone(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends) == 0, "can't make sockets");
        requireDone(dup2(ends[0], STDIN_FILENO) == STDIN_FILENO, "can't take standard input");
        close(ends[0]);
        m_writer = ends[1];
    }
    PiecewiseInput(PiecewiseInput const&) = delete;
    PiecewiseInput& operator=(PiecewiseInput const&) = delete;
    ~PiecewiseInput() { end(); }

    void write(std::string_view piece) {
        requireDone(send(m_writer, piece.data(), piece.size(), 0) == static_cast<ssize_t>(piece.size()),
                    "can't send a piece");
    }
    void end() {
        if (m_writer >= 0)
            close(m_writer);
        m_writer = -1;
    }

private:
    int m_writer;
};

/// A file in memory, with a name.
class ScratchFile {
public:
    ScratchFile() : m_file(memfd_create("output", MFD_CLOEXEC)) { requireDone(m_file >= 0, "can't make a file"); }

    std::string path() const { return "/proc/self/fd/" + std::to_string(m_file); }

    std::string content() const {
        std::string bytes(static_cast<std::size_t>(lseek(m_file, 0, SEEK_END)), '\0');
        requireDone(pread(m_file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
                    "can't read the output");
        return bytes;
    }

private:
    int m_file; // open as long as the process runs
};

struct Conversion {
    InputSet from;
    VynCharSet to;
    OnError onError;
};

struct Converted {
    std::string bytes;
    Losses losses;
};

Converted convertInPieces(Conversion const& how, std::string_view text, Input& cuts) {
    static ScratchFile const file;
    PiecewiseInput source;
    for (std::size_t pieces = 1; !text.empty(); ++pieces) {
        std::size_t const cut = 1 + cuts.upTo(cuts.flag() ? 600 : 3);
        std::size_t const size = cuts.empty() || pieces == mostPieces ? text.size() : std::min(cut, text.size());
        source.write(text.substr(0, size));
        text.remove_prefix(size);
    }
    source.end();

    vynconv::Input input("-");
    vynconv::Output output(file.path(), true, {});
    vynconv::Progress progress(input);
    Converted converted;
    std::size_t told = 0, end = 0;
    converted.losses = vynconv::Transcoder(how.from, how.to, how.onError, output)
                           .convert(input, progress, [&](vynconv::Loss const& loss) {
                               require(loss.offset >= end, "losses are told in their order", loss.offset);
                               end = loss.offset + loss.bytes.size();
                               ++told;
                           });
    require(told == converted.losses.count, "each loss is told", told);
    output.commit();
    converted.bytes = file.content();
    return converted;
}

/// The bytes of the mark that a text begins with, after which it is in the set of the mark.
std::size_t markLength(std::string_view text, InputSet& from) {
    for (VynCharSet const cs : {from.cs, from.ifMarked}) {
        std::string const mark = vynconv::byteOrderMark(cs);
        if (mark.empty() || !text.starts_with(mark))
            continue;
        from.cs = cs;
        return mark.size();
    }
    return 0;
}

/// As they stand in the file: an escaped one ends no line of it.
std::size_t lineEnds(VynCharSet cs, std::string_view text) {
    return static_cast<std::size_t>(cs == VYNCS_UTF16ESC ? std::ranges::count(text, '\n')
                                                         : std::ranges::count(vynulib::decode(cs, text), u'\n'));
}

void requireConvertsAsWhole(Converted const& got, Conversion how, std::string_view text) {
    std::size_t const mark = markLength(text, how.from);
    text.remove_prefix(mark);
    vynulib::Report report;
    std::string const bytes = vynulib::transcode(how.from.cs, how.to, text, how.onError, &report);
    require(got.bytes == bytes, "the output is the text converted", how.from.cs, how.to, got.bytes.size(),
            bytes.size());
    require(got.losses.count == report.losses, "the losses are those of the text", got.losses.count, report.losses);
    require(got.losses.stopped == (how.onError == OnError::stop && report.losses != 0), "a loss stops if it has to");
    if (report.losses == 0)
        return;
    std::size_t const line = 1 + lineEnds(how.from.cs, text.substr(0, report.firstLoss));
    require(got.losses.first.offset == mark + report.firstLoss, "the first loss is told", got.losses.first.offset);
    require(got.losses.first.line == line, "the line of the first loss is told", got.losses.first.line, line);
    require(!got.losses.first.bytes.empty() && text.substr(report.firstLoss).starts_with(got.losses.first.bytes),
            "what was lost is shown");
    require(describe(got.losses).find_first_of(std::string_view("\0\n\x1B", 3)) == std::string::npos,
            "a message is one line without controls");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::size_t const choices = std::min<std::size_t>(size, 32);
    Input input(data, choices), rest(data + choices, size - choices);
    VynCharSet const from = input.among(servedSets()), to = input.among(servedSets());
    Conversion const how{vynconv::findInputSet(VynCharSetToString(from)), to, input.among(policies)};
    std::string const marks[] = {{}, vynconv::byteOrderMark(how.from.cs), vynconv::byteOrderMark(how.from.ifMarked)};
    std::string text = input.among(marks);
    std::size_t const times = input.byte() < 0xE0 ? 1 : 8; // enough to fill the command's output buffer
    std::string const repeated = rest.text();
    for (std::size_t i = 0; i < times; ++i)
        text += repeated;
    requireConvertsAsWhole(convertInPieces(how, text, input), how, text);
    return 0;
}

// Strict conversion: pieces cut anywhere, into any rooms, give what the whole gives, in memory of exactly their size.

#include "fuzz/Exact.h"
#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "tests/support/ServedSets.h"

#include <vynulib/VynCharSetConverter.h>

namespace {

using vynulib::OnError;
using vynulib::Progress;
using vynulib::Report;
using vynulib::Status;

constexpr OnError policies[] = {OnError::stop, OnError::replace, OnError::escape, OnError::drop};

/// A text that was converted, how many characters of it were lost, and where the first began.
template <class Text>
struct Outcome {
    Text text;
    Report report;
};

template <class Text>
void requireSame(Outcome<Text> const& got, Outcome<Text> const& expected, char const* what, VynCharSet cs) {
    require(got.text == expected.text, what, "set", cs, "elements", got.text.size(), "expected", expected.text.size());
    require(got.report.losses == expected.report.losses, what, "set", cs, "losses", got.report.losses, "expected",
            expected.report.losses);
    require(got.report.firstLoss == expected.report.firstLoss, what, "set", cs, "first loss", got.report.firstLoss,
            "expected", expected.report.firstLoss);
}

/// The same few sizes again and again, and then large ones, so that no text takes long.
class Sizes {
public:
    Sizes(Input& input, std::size_t least) {
        for (std::size_t& size : m_sizes)
            size = least + input.upTo(input.flag() ? 3000 : 12);
    }
    std::size_t next() { return m_next < mostOfThese ? m_sizes[m_next++ % std::size(m_sizes)] : ample; }

private:
    static constexpr std::size_t mostOfThese = 60, ample = 4096;

    std::size_t m_sizes[3];
    std::size_t m_next = 0;
};

/// Converts `source` in pieces. `convert(piece, dst, room, last, report)` converts one; `lost(loss, text)` appends what a
/// loss becomes, and tells whether the conversion goes on.
template <class Text, class Source, class Convert, class Lost>
Outcome<Text> inPieces(Source source, Sizes pieces, Sizes rooms, Convert convert, Lost lost) {
    using Element = typename Source::value_type;
    Outcome<Text> outcome;
    std::size_t at = 0;
    for (std::size_t offered = std::min(pieces.next(), source.size());;) {
        bool const last = at + offered == source.size();
        std::size_t const room = rooms.next();
        Exact<Element> const piece(offered);
        source.copy(piece.get(), offered, at);
        Exact<typename Text::value_type> const dst(room);
        Report report;
        Progress const done = convert(Source(piece.get(), offered), dst.get(), room, last, report);
        require(done.read + done.length <= offered && done.written <= room, "progress stays in the piece and the room");
        require((done.length != 0) == (done.status == Status::unconvertible), "only a loss has a length");
        require(!last || done.status != Status::done || done.read == offered, "the last piece is read whole");
        outcome.text.append(dst.get(), done.written);
        if (outcome.report.losses == 0 && report.losses != 0)
            outcome.report.firstLoss = at + report.firstLoss;
        outcome.report.losses += report.losses;
        if (done.length != 0 && !lost(source.substr(at + done.read, done.length), outcome.text))
            return outcome;
        at += done.read + done.length;
        offered -= done.read + done.length;
        if (done.status == Status::done && last)
            return outcome;
        if (done.status == Status::done)
            offered = std::min(offered + std::max<std::size_t>(pieces.next(), 1), source.size() - at);
    }
}

/// Tells a loss as `transcode` would.
Report reportOf(Progress const& done) {
    return done.status == Status::unconvertible ? Report{1, done.read} : Report{};
}

bool isUnicode(VynCharSet cs) {
    constexpr VynCharSet sets[] = {VYNCS_UTF8, VYNCS_UTF16, VYNCS_UTF16BE, VYNCS_UTF16ESC, VYNCS_UTF32, VYNCS_UTF32BE};
    return std::ranges::find(sets, cs) != std::end(sets);
}

std::string replacementIn(VynCharSet to) {
    return vynulib::encode(to, isUnicode(to) ? u"\uFFFD" : u"?");
}

std::u16string escapeOf(std::u16string_view lost) {
    constexpr char16_t digits[] = u"0123456789ABCDEF";
    std::u16string text;
    for (char16_t const unit : lost) {
        text += u"U+";
        for (int shift = 12; shift >= 0; shift -= 4)
            text += digits[unit >> shift & 0xF];
    }
    return text;
}

/// Any bytes, or the text of the set that they are where GB 18030, in which most bytes are characters, gives them meaning.
std::string bytesIn(VynCharSet cs, Input& input, bool valid) {
    std::string const bytes = input.text();
    return valid ? vynulib::transcode(VYNCS_GB18030, cs, bytes, OnError::drop) : bytes;
}

void decode(VynCharSet cs, Input& input, bool valid) {
    OnError const onError = input.among(policies);
    Sizes const pieces(input, 0), rooms(input, 2);
    std::string const bytes = bytesIn(cs, input, valid);
    Outcome<std::u16string> whole;
    whole.text = vynulib::decode(cs, bytes, onError, &whole.report);
    require(whole.text.size() <= vynulib::maxUnits(cs, bytes.size()), "maxUnits is enough", cs);
    require(vynulib::isValid(cs, bytes) == (whole.report.losses == 0), "isValid tells whether there is a loss", cs);

    auto const convert = [&](std::string_view piece, char16_t* dst, std::size_t room, bool last, Report& report) {
        Progress const done = vynulib::decode(cs, piece, dst, room, last);
        report = reportOf(done);
        return done;
    };
    auto const lost = [&](std::string_view, std::u16string& text) {
        if (onError == OnError::replace || onError == OnError::escape)
            text += u'\uFFFD';
        return onError != OnError::stop;
    };
    requireSame(inPieces<std::u16string>(std::string_view(bytes), pieces, rooms, convert, lost), whole,
                "decoded in pieces as in one", cs);
}

void encode(VynCharSet cs, Input& input, bool valid) {
    OnError const onError = input.among(policies);
    Sizes const pieces(input, 0), rooms(input, 8);
    std::u16string const units = valid ? vynulib::decode(VYNCS_GB18030, input.text(), OnError::drop) : input.units();
    Outcome<std::string> whole;
    whole.text = vynulib::encode(cs, units, onError, &whole.report);
    require(whole.text.size() <= vynulib::maxBytes(cs, units.size()), "maxBytes is enough", cs);
    if (onError == OnError::stop && cs != VYNCS_UTF16ESC) {
        std::u16string const decoded = vynulib::decode(cs, whole.text, OnError::stop);
        require(decoded == units.substr(0, whole.report.firstLoss), "what was encoded decodes", cs);
    }

    auto const convert = [&](std::u16string_view piece, char* dst, std::size_t room, bool last, Report& report) {
        Progress const done = vynulib::encode(cs, piece, dst, room, last);
        report = reportOf(done);
        return done;
    };
    auto const lost = [&](std::u16string_view loss, std::string& text) {
        if (onError == OnError::replace)
            text += replacementIn(cs);
        if (onError == OnError::escape)
            text += vynulib::encode(cs, escapeOf(loss));
        return onError != OnError::stop;
    };
    requireSame(inPieces<std::string>(std::u16string_view(units), pieces, rooms, convert, lost), whole,
                "encoded in pieces as in one", cs);
}

void transcode(VynCharSet from, Input& input, bool valid) {
    VynCharSet const to = input.among(servedSets());
    OnError const onError = input.among(policies);
    Sizes const pieces(input, 0), rooms(input, 48); // what a pair becomes at most
    std::string const bytes = bytesIn(from, input, valid);
    Outcome<std::string> whole;
    whole.text = vynulib::transcode(from, to, bytes, onError, &whole.report);

    auto const convert = [&](std::string_view piece, char* dst, std::size_t room, bool last, Report& report) {
        return vynulib::transcode(from, to, piece, dst, room, last, onError, &report);
    };
    auto const stop = [](std::string_view, std::string&) { return false; };
    requireSame(inPieces<std::string>(std::string_view(bytes), pieces, rooms, convert, stop), whole,
                "transcoded in pieces as in one", to);
}

/// Decodes, and encodes by itself what stands between two losses of that.
Outcome<std::string> fragmentwise(VynCharSet from, VynCharSet to, std::string_view bytes, OnError onError) {
    Outcome<std::string> outcome;
    Report& report = outcome.report;
    std::u16string units(bytes.size(), u'\0'); // no byte makes more than one
    for (std::size_t at = 0;;) {
        std::string_view const rest = bytes.substr(at);
        Progress const decoded = vynulib::decode(from, rest, units.data(), units.size(), true);
        Report encoding;
        outcome.text += vynulib::encode(to, std::u16string_view(units).substr(0, decoded.written), onError, &encoding);
        if (report.losses == 0 && encoding.losses != 0)
            report.firstLoss = at + vynulib::decode(from, rest, units.data(), encoding.firstLoss, true).read;
        report.losses += encoding.losses;
        if (decoded.status == Status::done || (onError == OnError::stop && encoding.losses != 0))
            return outcome;
        report.firstLoss = std::min(report.firstLoss, at + decoded.read);
        ++report.losses;
        if (onError == OnError::stop)
            return outcome;
        if (onError != OnError::drop)
            outcome.text += replacementIn(to);
        at += decoded.read + decoded.length;
    }
}

void transcodeInTwoSteps(VynCharSet from, Input& input, bool valid) {
    VynCharSet const to = input.among(servedSets());
    OnError const onError = input.among(policies);
    std::string const bytes = bytesIn(from, input, valid);
    Outcome<std::string> whole;
    whole.text = vynulib::transcode(from, to, bytes, onError, &whole.report);
    requireSame(whole, fragmentwise(from, to, bytes, onError), "transcoded as decoded and encoded", to);
}

/// Where the converter of the set raises no flag, or nothing is lost, both give the same, but for the differences named.
void compareWithConverter(VynCharSet cs, Input& input, bool valid) {
    if (cs == VYNCS_UTF16 || cs == VYNCS_UTF16BE || cs == VYNCS_UTF32BE)
        return; // no converter, or one that converts nothing without a limit
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(cs);
    bool const lenient = isUnicode(cs) || cs == VYNCS_EUC_JP;
    bool const deniesTrails = cs == VYNCS_WCP936 || cs == VYNCS_WCP950; // of codes that it encodes
    std::string bytes = bytesIn(cs, input, valid);
    Report report;
    std::u16string decoded = vynulib::decode(cs, bytes, OnError::drop, &report);
    if (decoded.find(u'\0') != decoded.npos)
        return;
    bytes.append(8, '\0'); // a terminator of four bytes after a character that is cut short
    std::u16string units(bytes.size(), u'x');
    bool illegal = false;
    units.resize(converter.toUTF16(reinterpret_cast<unsigned short*>(units.data()), bytes.c_str(), units.size(),
                                   ILLCHAR_REPLACE, &illegal, -1));
    if ((report.losses == 0 && !deniesTrails) || (!illegal && !lenient))
        require(report.losses == 0 && decoded == units, "decoded as by the converter", cs);

    std::string const encoded = vynulib::encode(cs, decoded, OnError::drop, &report);
    if (report.losses != 0 || cs == VYNCS_UTF8)
        return;
    std::string expected(encoded.size() + 4, 'x');
    expected.resize(converter.fromUTF16(expected.data(), reinterpret_cast<unsigned short const*>(decoded.c_str()),
                                        encoded.size(), ILLCHAR_STOP, &illegal));
    require(encoded == expected && !illegal, "encoded as by the converter", cs);
}

constexpr void (*tests[])(VynCharSet, Input&, bool valid) = {decode, encode, transcode, compareWithConverter,
                                                             transcodeInTwoSteps};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    VynCharSet const cs = input.among(servedSets());
    std::size_t const test = input.upTo(2 * std::size(tests) - 1);
    tests[test % std::size(tests)](cs, input, test >= std::size(tests));
    return 0;
}

#include <vynulib/VynUString.h>

#include <cxxabi.h>
#include <istream>
#include <limits>
#include <ostream>
#include <streambuf>
#include <string>

namespace {

// The bytes of a stream, read straight from its buffer. What the buffer throws ends the input as a failure.
class ByteSource {
public:
    static constexpr int endOfInput = 0xFF; // deliberate: the byte 0xFF ends the input just as the end of file does

    explicit ByteSource(std::streambuf* buffer) : m_buffer(buffer), m_atEnd(!buffer) {}

    // The next byte, which stays in the stream, or `endOfInput`.
    int peek() {
        int byte = endOfInput;
        if (!m_atEnd)
            guarded([&] { byte = m_buffer->sgetc() & 0xFF; });
        m_atEnd = byte == endOfInput;
        return byte;
    }

    // Takes the byte that `peek` gave out of the stream.
    void skip() {
        guarded([&] { m_buffer->sbumpc(); });
    }

    bool atEnd() const { return m_atEnd; }
    bool failed() const { return m_failed; }

private:
    // A forced unwind has no exception object, so that its reference is null.
    template <class Read>
    __attribute__((no_sanitize("null", "alignment"))) void guarded(Read read) {
        try {
            read();
        } catch (abi::__forced_unwind&) { // the cancelling of a thread must not be held up
            throw;
        } catch (...) {
            m_failed = m_atEnd = true;
        }
    }

    std::streambuf* m_buffer;
    bool m_atEnd;
    bool m_failed = false;
};

// White space of the C locale, whatever locale the process is in.
bool isSpace(int byte) {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

void gatherWord(ByteSource& source, unsigned long limit, std::string& bytes) {
    while (isSpace(source.peek()))
        source.skip();
    while (bytes.size() < limit) {
        int const byte = source.peek();
        if (byte == ByteSource::endOfInput || isSpace(byte))
            return;
        bytes.push_back(static_cast<char>(byte));
        source.skip();
    }
}

void gatherLine(ByteSource& source, unsigned long limit, char delimiter, std::string& bytes) {
    while (bytes.size() < limit) {
        int const byte = source.peek();
        if (byte == ByteSource::endOfInput)
            return;
        source.skip();
        if (byte == static_cast<unsigned char>(delimiter))
            return;
        bytes.push_back(static_cast<char>(byte));
    }
}

void assignBytes(VynUString& text, std::string& bytes) {
    constexpr std::size_t padding = 8; // a terminator of four bytes after a character that is cut short
    std::size_t const length = bytes.size();
    bytes.append(padding, '\0');
    text = VynUString(bytes.data(), length, VYNCS_OS_DEFAULT);
}

// Reads what `gather(source, limit, bytes)` takes from the stream, `limit` being the most bytes to store. The state
// that the stream is in before does not count, and a failure of its buffer discards what was gathered.
template <class Gather>
std::istream& readText(std::istream& in, VynUString& text, Gather gather) {
    if (in.tie() != nullptr)
        in.tie()->flush();
    text.erase();
    unsigned long const unlimited = std::numeric_limits<unsigned long>::max() - 1;
    unsigned long const limit = in.width() < 1 ? unlimited : static_cast<unsigned long>(in.width()) - 1;

    ByteSource source(in.rdbuf());
    std::string bytes;
    if (limit > 0)
        gather(source, limit, bytes);
    if (source.failed())
        bytes.clear();

    in.width(0);
    std::ios_base::iostate state = std::ios_base::goodbit;
    if (source.atEnd() && !source.failed())
        state |= std::ios_base::eofbit;
    if (bytes.empty())
        state |= std::ios_base::failbit;
    else
        assignBytes(text, bytes);
    in.setstate(state);
    return in;
}

} // namespace

std::ostream& operator<<(std::ostream& out, VynUString const& text) {
    VynUString copy(text); // rendering caches the bytes in the string rendered
    char const* const bytes = copy.c_str(VYNCS_OS_DEFAULT);
    if (bytes)
        return out << bytes;
    out.setstate(std::ios_base::badbit);
    return out;
}

std::istream& operator>>(std::istream& in, VynUString& text) {
    return readText(in, text, gatherWord);
}

std::istream& getline(std::istream& in, VynUString& text, char delimiter) {
    return readText(in, text, [delimiter](ByteSource& source, unsigned long limit, std::string& bytes) {
        gatherLine(source, limit, delimiter, bytes);
    });
}

std::istream& getline(std::istream& in, VynUString& text) {
    return getline(in, text, '\r');
}

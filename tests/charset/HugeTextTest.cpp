// Texts of 1 GiB and of more than 4 GiB. Each is a piece of memory mapped over and over, with an end of its own.

#include <vynulib/Transcoding.h>
#include <vynulib/VynCharSetConverter.h>

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace {

using vynulib::Progress;
using vynulib::Status;

/// Bytes at many addresses of which only some MiB are in memory: the same ones everywhere, but for the last piece.
class RepeatedMemory {
public:
    explicit RepeatedMemory(std::size_t size) : m_size((size + piece - 1) / piece * piece + piece) {
        int const file = memfd_create("text", 0);
        void* const place = mmap(nullptr, m_size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (file < 0 || place == MAP_FAILED || ftruncate(file, piece) != 0)
            throw std::system_error(errno, std::generic_category());
        m_begin = static_cast<char*>(place);
        for (std::size_t at = 0; at < m_size; at += piece)
            if (mmap(m_begin + at, piece, PROT_READ | PROT_WRITE,
                     MAP_FIXED | (at + piece < m_size ? MAP_SHARED : MAP_PRIVATE), file, 0) == MAP_FAILED)
                throw std::system_error(errno, std::generic_category());
        close(file);
    }
    RepeatedMemory(RepeatedMemory const&) = delete;
    RepeatedMemory& operator=(RepeatedMemory const&) = delete;
    ~RepeatedMemory() { munmap(m_begin, m_size); }

    /// Filled with a unit and ended by one that no set converts, a lone surrogate or an invalid byte, and a terminator.
    template <class Element>
    Element* text(std::size_t length, Element filler, Element last) {
        auto* const elements = reinterpret_cast<Element*>(m_begin);
        std::fill_n(elements, piece / sizeof(Element), filler);
        Element* const ownPiece = reinterpret_cast<Element*>(m_begin + m_size - piece);
        std::fill_n(ownPiece, piece / sizeof(Element), filler);
        // The text ends in the last piece: it begins where that makes it as long as it is to be.
        Element* const end = ownPiece + piece / sizeof(Element) - 1;
        end[-1] = last;
        *end = 0;
        return end - length;
    }
    char* begin() const { return m_begin; }

private:
    static constexpr std::size_t piece = 8U << 20;

    std::size_t m_size;
    char* m_begin;
};

class HugeText : public testing::TestWithParam<std::size_t> {
protected:
    std::size_t const length = GetParam();
    RepeatedMemory target{2 * GetParam() + 16};
};

TEST_P(HugeText, InBytesIsTakenToItsEnd) {
    RepeatedMemory memory(length + 1);
    char const* const text = memory.text(length, 'a', '\xFF');
    std::string_view const source(text, length);
    auto* const units = reinterpret_cast<char16_t*>(target.begin());
    Progress const lost{Status::unconvertible, length - 1, length - 1, 1};
    for (Progress const& done : {vynulib::decode(VYNCS_UTF8, source, units, length, true),
                                 vynulib::transcode(VYNCS_UTF8, VYNCS_KOI8R, source, target.begin(), length, true)}) {
        EXPECT_EQ(done.status, lost.status);
        EXPECT_EQ(done.read, lost.read);
        EXPECT_EQ(done.written, lost.written);
    }
    EXPECT_FALSE(vynulib::isValid(VYNCS_UTF8, source));
    EXPECT_TRUE(vynulib::isValid(VYNCS_WCP1251, source));

    for (VynCharSet const cs : {VYNCS_ISO_8859_1, VYNCS_WCP949})
        EXPECT_EQ(GetNumUnits(text, cs), length);
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(VYNCS_ISO_8859_1);
    EXPECT_EQ(converter.getNumUnits(text, length - 2), length - 2);
    EXPECT_EQ(converter.toUTF16(reinterpret_cast<unsigned short*>(units), text, length, ILLCHAR_STOP, nullptr, -1),
              length);
    EXPECT_EQ(LocalToUTF8(reinterpret_cast<unsigned char*>(target.begin()), text, length + 2, VYNCS_ISO_8859_1),
              length + 1);
}

TEST_P(HugeText, InUnitsIsTakenToItsEnd) {
    RepeatedMemory memory(2 * length + 2);
    unsigned short const* const text = memory.text<unsigned short>(length, 0x410, 0xD800);
    std::u16string_view const source(reinterpret_cast<char16_t const*>(text), length);
    Progress const done = vynulib::encode(VYNCS_WCP1251, source, target.begin(), length, true);
    EXPECT_EQ(done.status, Status::unconvertible);
    EXPECT_EQ(done.read, length - 1);
    EXPECT_EQ(done.written, length - 1);
    EXPECT_EQ(GetNumBytes(text, VYNCS_WCP1251), length);
    EXPECT_EQ(UTF16ToUTF8(reinterpret_cast<unsigned char*>(target.begin()), text, 2 * length), 2 * length - 1);
    EXPECT_EQ(VynCharSetWStrlen(text), static_cast<unsigned>(length));
}

INSTANTIATE_TEST_SUITE_P(Lengths, HugeText, testing::Values(1UL << 30, (4UL << 30) + (16UL << 20) + 5));

} // namespace

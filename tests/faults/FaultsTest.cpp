// Every public operation and function, where memory runs out at each of its allocations, and on a small stack. Each call
// is made in a process of its own, in which no table is built yet. check-calls.sh tells which functions are not called.

#include "tables/Tables.h"
#include "tests/support/FailingAllocation.h"

#include <vynulib/vynulib.h>

#include <gtest/gtest.h>

#include <pthread.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <istream>
#include <iterator>
#include <memory>
#include <optional>
#include <streambuf>

namespace {

using Text = std::u16string;
using namespace std::string_view_literals;
constexpr VynCharSet cs = VYNCS_WCP932;

/// A stream's bytes in the object itself, so that it is not the stream that runs out of memory.
struct LocalBuffer : std::streambuf {
    LocalBuffer() { rewind(); }
    void rewind() {
        std::fill(std::begin(bytes), std::end(bytes) - 1, 'w');
        setg(bytes, bytes, std::end(bytes));
        setp(bytes, std::end(bytes));
    }
    char bytes[700] = {};
};

struct OpenRegistry : CharSetConverterManager {
    Text names() {
        Text text;
        for (int const set :
             {static_cast<int>(charSetFromString("NEW")), static_cast<int>(*charSetToString(VYNCS_NEW))})
            text += static_cast<char16_t>(set);
        return text;
    }
    static constexpr auto VYNCS_NEW = static_cast<VynCharSet>(28602);
};

/// What the calls work on.
struct Things {
    static constexpr unsigned short unit = 0x3042;

    VynUString s{unit, 300}, other{unit, 400}, brief{std::u16string_view(u"a,b")}, read;
    VynUStringList list{s, u','}, pair{brief, u','};
    OpenRegistry registry;
    VynPascalString pascal{2, "ab"};
    VynBSTR bstr{300, {}};
    LocalBuffer buffer;
    std::istream in{&buffer};
    std::ostream out{&buffer};
    LookupTable<unsigned char> bytes;
    LookupTable<unsigned short> shorts;
    LookupTable<unsigned int> ints;
    LookupTableEx<unsigned short> extended;
    VynUCharTable ownTable{ranges, true};
    static constexpr int huge = 100'000; // bytes: more than a small stack
    unsigned short units[huge] = {};
    char dst[huge] = {};
    unsigned char utf8[huge] = {};
    std::string const longBytes = std::string(huge - 1000, 'x');
    static constexpr unsigned short ranges[] = {'a', 'z', 7, 0};

    Things() {
        list.append(brief);
        std::fill(std::begin(bstr.text), std::end(bstr.text), unit);
        s.at(0) = 'q';
    }
    auto source() const { return reinterpret_cast<unsigned char const*>(longBytes.c_str()); }

    /// All that a call which fails leaves as it was.
    Text state() {
        Text all = registry.names();
        for (VynUString const* const text : {&s, &other, &brief})
            all.append(text->view()) += static_cast<char16_t>(text->capacity());
        for (VynUStringList const* const texts : {&list, &pair})
            for (VynUString const& text : *texts)
                all.append(text.view()) += u'\n';
        return all += static_cast<char16_t>(bytes.lookup(9) + shorts.lookup(9) + ints.lookup(9) + extended.lookup(9));
    }
};

/// A result as text. Of streams and the like, that they came back is all.
template <class Result>
Text tell(Result const& result) {
    if constexpr (std::is_same_v<Result, VynUString>)
        return Text(result.view());
    else if constexpr (std::is_same_v<Result, VynUStringList>)
        return tell(result.combine(VynUString(u'\n')));
    else if constexpr (std::is_convertible_v<Result, std::u16string_view>)
        return Text(std::u16string_view(result));
    else if constexpr (std::is_same_v<Result, vynulib::Progress>)
        return tell(std::to_string(result.read) + ' ' + std::to_string(result.written));
    else if constexpr (std::is_same_v<Result, std::optional<VynCharSet>>)
        return tell(static_cast<int>(result.value_or(VYNCS_OS_DEFAULT)));
    else if constexpr (std::is_arithmetic_v<Result> || std::is_enum_v<Result>)
        return tell(std::to_string(result));
    else if constexpr (std::is_convertible_v<Result, std::string_view>) {
        std::string_view const bytes = result;
        return Text(bytes.begin(), bytes.end());
    } else
        return {};
}

/// What becomes of a call when memory runs out.
enum Failure {
    throws, ///< `std::bad_alloc`, and all is as before.
    gives,  ///< A result that says so.
    never   ///< It needs no memory.
};

struct Row {
    Failure failure;
    unsigned line;
    std::function<Text(Things&, unsigned allocations)> call;
    Text without = u"0"; ///< What it gives.
};

template <class Call>
Row row(Failure failure, Call call, Text without = u"0", unsigned line = __builtin_LINE()) {
    auto const limited = [call](Things& things, unsigned allocations) -> Text {
        struct Limit {
            explicit Limit(unsigned count) { allocationsLeft = count; }
            ~Limit() { allocationsLeft = unlimitedAllocations; }
        } const limit(allocations);
        if constexpr (std::is_void_v<decltype(call(things))>) {
            call(things);
            return {};
        } else {
            auto&& result = call(things);
            allocationsLeft = unlimitedAllocations;
            return tell(result);
        }
    };
    return {failure, line, limited, std::move(without)};
}

/// A converter of its own, without tables as yet, in each of the operations of its class.
template <class Converter, class... Arguments>
void addConverter(std::vector<Row>& rows, Failure failure, Failure countingBytes, Failure countingUnits,
                  Arguments... arguments) {
    auto const converter = std::make_shared<Converter>(arguments...);
    auto const add = [&](Failure kind, auto operation, unsigned line = __builtin_LINE()) {
        rows.push_back(row(
            kind, [=](Things& t) { return operation(*converter, t); }, u"0", line));
    };
    static constexpr char const source[] = "a\x82\xA0\0\0\0\0";
    static constexpr auto replace = ILLCHAR_REPLACE, escape = ILLCHAR_ESCAPE;
    add(failure, [](auto& c, Things& t) { return c.Converter::toUTF16(t.units, source, 9, replace, nullptr, 3); });
    add(failure, [](auto& c, Things& t) { return c.Converter::fromUTF16(t.dst, t.brief.data(), 9, escape, nullptr); });
    add(countingBytes, [](auto& c, Things& t) { return c.Converter::getNumBytes(t.brief.data(), 3); });
    add(countingUnits, [](auto& c, Things&) { return c.Converter::getNumUnits(source, 3); });
    add(never, [](auto& c, Things& t) { return c.Converter::toUTF8(t.utf8, source, 9, replace, nullptr); });
    add(never, [](auto& c, Things& t) { return c.Converter::fromUTF8(t.dst, t.source(), 9, replace, nullptr); });
    if constexpr (requires { converter->load(); })
        add(throws, [](auto& c, Things&) { c.Converter::load(); });
}

/// What derived converters use of the class that has the tables.
template <class Converter, class Tables>
struct Open : Converter {
    using Converter::Converter;
    bool loadBase() {
        Tables::load(); // NOLINT(bugprone-parent-virtual-call): as it is in the base
        return Tables::forwardTable() && Tables::reverseTable();
    }
};

std::vector<Row> converterRows() {
    std::vector<Row> rows;
    addConverter<VynCharSetConverterSBCS>(rows, throws, never, never, oCP1252map, VYNCS_WCP1252);
    addConverter<VynCharSetConverterDBCS>(rows, throws, throws, never, oCP932map, oCP932Type, VYNCS_WCP932);
    addConverter<VynCharSetConverterDBCSEx>(rows, throws, throws, throws, oSJIS0213_2004map, oCP932Type,
                                            VYNCS_SJIS0213);
    addConverter<VynCharSetConverterEUC_CN_KR>(rows, throws, throws, never, oKSX1001map, VYNCS_EUC_KR);
    addConverter<VynCharSetConverterEUC_JP>(rows, throws, throws, throws, oJIS0208map, oJIS0201map, oJIS0212map,
                                            VYNCS_EUC_JP);
    addConverter<VynCharSetConverterGB18030>(rows, throws, throws, throws, oGBKmap, VYNCS_GB18030);
    addConverter<VynCharSetConverterUTF8>(rows, never, never, never, VYNCS_UTF8);
    addConverter<VynCharSetConverterUTF16>(rows, never, never, never, VYNCS_UTF16);
    addConverter<VynCharSetConverterUTF16Esc>(rows, never, never, never, VYNCS_UTF16ESC);
    addConverter<VynCharSetConverterUTF32>(rows, never, never, never, VYNCS_UTF32);
    auto const gb = std::make_shared<VynCharSetConverterGB18030>(oGBKmap, VYNCS_GB18030);
    auto const dbcs =
        std::make_shared<Open<VynCharSetConverterDBCS, VynCharSetConverterMBCS>>(oCP949map, oCP949Type, VYNCS_WCP949);
    auto const dbcsEx = std::make_shared<Open<VynCharSetConverterDBCSEx, VynCharSetConverterMBCSEx>>(
        oSJIS0213_2004map, oCP932Type, VYNCS_SJIS0213);
    auto const utf32 = std::make_shared<VynCharSetConverterUTF32>(VYNCS_UTF32);
    rows.push_back(row(throws, [=](Things&) { return dbcs->loadBase(); }));
    rows.push_back(row(throws, [=](Things&) { return dbcsEx->loadBase(); }));
    rows.push_back(row(throws, [=](Things&) { return gb->getGB2UniRange(0x10000)->first; }));
    rows.push_back(row(throws, [=](Things&) { return gb->getUni2GBRange(0x80)->first; }));
    rows.push_back(row(never, [=](Things& t) {
        unsigned char* at = t.utf8;
        return utf32->UTF32fromUTF8(&at);
    }));
    return rows;
}

std::vector<Row> charSetRows() {
    using namespace vynulib;
    static constexpr auto ignored = static_cast<VynCharSet>(7);
    return {
        row(throws, [](Things&) { return CharSetConverterManager().charSetFromString("VYNCS_KOI8R"); }),
        row(throws, [](Things& t) { return t.registry.insertCharSetMap(t.registry.VYNCS_NEW, "NEW"); }),
        row(throws, [](Things& t) { return t.registry.insertCharSetMap(t.registry.VYNCS_NEW, t.s); }),
        row(throws, [](Things& t) { return t.registry.insert(ignored, VynCharSetConverter::getConverter(cs), true); }),
        row(throws, [](Things& t) { return t.registry.charSetFromString(t.longBytes.c_str()); }),
        row(throws, [](Things& t) { return VynCharSetFromString(t.longBytes.c_str()); }),
        row(never, [](Things& t) { return t.registry.charSetToString(VYNCS_UTF8); }),
        row(never, [](Things&) { return VynCharSetToString(VYNCS_EUC_JP); }),
        row(never, [](Things& t) { return t.registry.getConverter(VYNCS_EUC_JP)->getMinUnitSize(); }),
        row(never, [](Things& t) { return t.registry.load(VYNCS_EUC_TW)->getMinUnitSize(); }),
        row(
            gives, [](Things& t) { return t.registry.getDefaultCharSet(); }, u"28591"),
        row(never, [](Things& t) { return t.registry.initLocaleMap(); }),
        row(never, [](Things&) { return g_oCnvtMgr.getConverter(cs)->getMaxUnitSize(); }),

        row(gives, [](Things& t) { return LocalToUTF8(t.utf8, t.longBytes.c_str(), t.huge, cs); }),
        row(gives, [](Things& t) { return LocalToUTF16(t.units, t.longBytes.c_str(), t.huge, cs); }),
        row(gives, [](Things& t) { return LocalPathToUTF8(t.utf8, t.longBytes.c_str(), t.huge); }),
        row(gives, [](Things& t) { return UTF8ToLocal(t.dst, t.source(), t.huge, cs); }),
        row(gives, [](Things& t) { return UTF16ToLocal(t.dst, t.s.data(), 2500, cs); }),
        row(gives, [](Things& t) { return UTF8ToLocalPath(t.dst, t.source(), t.huge); }),
        row(never, [](Things& t) { return UTF16ToUTF8(t.utf8, t.s.data(), 2500); }),
        row(never, [](Things& t) { return UTF8ToUTF16(t.units, t.source(), t.huge); }),
        row(gives, [](Things& t) { return GetNumBytes(t.s.data(), cs); }),
        row(gives, [](Things&) { return GetNumUnits("\x81\x30\x81\x30", VYNCS_GB18030); }),
        row(never, [](Things&) { return GetMinUnitSize(cs) + GetMaxUnitSize(cs) + GetNullCharSize(cs); }),
        row(never, [](Things& t) { return VynCharSetWStrlen(t.s.data()); }),
        row(never, [](Things& t) { return VynCharSetWStrEqual(t.s.data(), t.other.data()); }),

        row(throws,
            [](Things& t) { return decode(cs, t.longBytes, reinterpret_cast<char16_t*>(t.units), t.huge, true); }),
        row(throws, [](Things& t) { return encode(cs, t.s.view(), t.dst, 99, true); }),
        row(throws, [](Things& t) { return transcode(cs, VYNCS_EUC_JP, t.longBytes, t.dst, t.huge, true); }),
        row(throws, [](Things& t) { return decode(cs, t.longBytes, OnError::escape); }),
        row(throws, [](Things& t) { return encode(cs, t.s.view(), OnError::escape); }),
        row(throws, [](Things& t) { return transcode(cs, VYNCS_EUC_JP, t.longBytes, OnError::escape); }),
        row(throws, [](Things& t) { return isValid(cs, t.longBytes); }),
        row(never, [](Things& t) { return charSetNamed(t.longBytes); }),
        row(never, [](Things&) { return preferredName(cs); }),
        row(never, [](Things&) { return maxUnits(cs, 9) + maxBytes(cs, 9); }),
        row(never, [](Things&) { return version(); }),
        row(never, [](Things&) { return instructionSet(); }),

        row(throws, [](Things& t) { t.bytes.insert(9, 1); }),
        row(throws, [](Things& t) { t.shorts.insert(9, 1); }),
        row(throws, [](Things& t) { t.ints.insert(9, 1); }),
        row(throws, [](Things& t) { t.extended.insert(9, 1); }),
        row(throws, [](Things& t) { return t.ownTable.getValue('b'); }),
        row(throws, [](Things&) { return VynUChar::getCharClass('a'); }),
        row(throws, [](Things&) { return VynUChar(0, 0).getCharClass(); }),
        row(throws, [](Things&) { return VynUChar(0, 0).isDigit(); }),
        row(throws, [](Things&) { return VynUChar(0, 0).isLetter(); }),
        row(throws, [](Things&) { return VynUChar(0, 0).isNonChar(); }),
        row(throws, [](Things&) { return VynUChar(0, 0).isPunctuation(); }),
        row(throws, [](Things&) { return VynUChar(0, 0).isWhiteSpace(); }),
    };
}

std::vector<Row> stringRows() {
    using String = VynUString;
    static constexpr auto unit = Things::unit;
    return {
        row(never, [](Things&) { return String(); }),
        row(never, [](Things& t) { return String(std::move(t.s)); }),
        row(never, [](Things&) { return String(unit); }),
        row(never, [](Things&) { return String(-5); }),
        row(throws, [](Things& t) { return String(t.s); }),
        row(throws, [](Things& t) { return String(t.other, 1, 300); }),
        row(throws, [](Things&) { return String('c', cs); }),
        row(throws, [](Things&) { return String('c', 2000, cs); }),
        row(throws, [](Things&) { return String(unit, 300); }),
        row(throws, [](Things& t) { return String(t.longBytes.c_str(), cs); }),
        row(throws, [](Things& t) { return String(t.longBytes.c_str(), 999, cs); }),
        row(throws, [](Things& t) { return String(t.s.data()); }),
        row(throws, [](Things& t) { return String(t.s.data(), 299); }),
        row(throws, [](Things& t) { return String(t.s.data(), t.s.data() + 299); }),
        row(throws, [](Things& t) { return String(t.s.view()); }),
        row(throws, [](Things& t) { return String(t.pascal, cs); }),
        row(throws, [](Things& t) { return String(&t.pascal, cs); }),
        row(throws, [](Things& t) { return String(t.bstr); }),
        row(throws, [](Things& t) { return String(&t.bstr); }),

        row(throws, [](Things& t) { t.s = t.other; }),
        row(never, [](Things& t) { t.s = std::move(t.other); }),
        row(throws, [](Things& t) { t.brief = &t.pascal; }),
        row(throws, [](Things& t) { t.brief = t.bstr; }),
        row(throws, [](Things& t) { t.s = t.longBytes.c_str(); }),
        row(throws, [](Things& t) { t.brief = t.s.data(); }),
        row(throws, [](Things& t) { t.brief = t.s.view(); }),
        row(never, [](Things& t) { t.s = unit; }),
        row(throws, [](Things& t) { t.s = 'c'; }),
        row(throws, [](Things& t) { t.brief.assign(t.s); }),
        row(throws, [](Things& t) { t.s.swap(t.other); }),
        row(never, [](Things& t) { t.s.erase(); }),
        row(never, [](Things& t) { return t.s.at(3) + std::as_const(t.s).at(4); }),
        row(throws, [](Things& t) { return t.s.at_utf32(299); }),
        row(never, [](Things& t) { return t.s.numChars(); }),
        row(throws, [](Things& t) { return t.s.length(cs); }),
        row(throws, [](Things& t) { return t.s.c_str(cs); }),
        row(throws, [](Things& t) { return t.s.copy(t.dst, 2000, cs); }),
        row(throws, [](Things& t) { return t.s.copy(&t.pascal, cs); }),
        row(never, [](Things& t) { return t.s.copy(t.units, 300) + t.s.copy(&t.bstr); }),

        row(throws, [](Things& t) { t.s.trim(VynUString::TRIM_BOTH, VynUString::TRIM_WHITESPACE); }),
        row(throws, [](Things& t) { t.s.resize(600, 'c', cs); }),
        row(throws, [](Things& t) { t.brief.resize(9, 'c', cs); }),
        row(throws, [](Things& t) { t.s.resize(600, unit); }),
        row(throws, [](Things& t) { return t.s.left(299); }),
        row(throws, [](Things& t) { return t.s.mid(1, 299); }),
        row(throws, [](Things& t) { t.s.replace(1, 2, t.other, 0); }),
        row(throws, [](Things& t) { t.s.replace(t.s.data(), t.s.data() + 1, t.s); }),
        row(never, [](Things& t) { t.s.erase(1, 2); }),
        row(throws, [](Things& t) { return t.s + 'c'; }),
        row(throws, [](Things& t) { return t.s + unit; }),
        row(throws, [](Things& t) { return t.s + "c"; }),
        row(throws, [](Things& t) { return t.s + t.s.data(); }),
        row(throws, [](Things& t) { return t.s + t.s; }),
        row(throws, [](Things& t) { return 'c' + t.s; }),
        row(throws, [](Things& t) { return unit + t.s; }),
        row(throws, [](Things& t) { return "c" + t.s; }),
        row(throws, [](Things& t) { return t.s.data() + t.s; }),
        row(throws, [](Things& t) { t.s.toUpper(false); }),
        row(throws, [](Things& t) { t.s.toLower(false); }),
        row(never, [](Things& t) { return t.s.canonicalCompare(t.s.data(), t.other.data()); }),
        row(throws, [](Things& t) { return t.s.canonicalCompareNoCase(t.s.data(), t.other.data()); }),
        row(never, [](Things& t) { return t.s.compare(t.other); }),
        row(throws, [](Things& t) { return t.s.compareNoCase(t.other); }),
        row(never, [](Things& t) { return (t.s < t.other) + (t.s == t.other) + (t.s != t.other); }),
        row(never,
            [](Things& t) { return t.s.find(unit) + t.s.rfind(unit, 9) + t.s.find(t.brief) + t.s.rfind(t.brief); }),
        row(throws, [](Things& t) { return t.s.split(unit); }),
        row(throws, [](Things& t) { return t.s.split(t.brief); }),
        row(throws, [](Things& t) { return t.s.split('c', cs); }),
        row(throws, [](Things& t) { return "c" == t.s; }),
        row(throws, [](Things& t) { return "c" != t.s; }),
        row(throws, [](Things& t) { return "c" < t.s; }),
        row(throws, [](Things& t) { return "c" > t.s; }),
        row(throws, [](Things& t) { return "c" <= t.s; }),
        row(throws, [](Things& t) { return "c" >= t.s; }),
        row(throws,
            [](Things& t) { return (t.s.data() == t.other) + (t.s.data() != t.other) + (t.s.data() < t.other); }),
        row(throws,
            [](Things& t) { return (t.s.data() > t.other) + (t.s.data() <= t.other) + (t.s.data() >= t.other); }),

        row(never, [](Things& t) { return t.brief.SetupSpace()->m_ulLength; }),
        row(throws, [](Things& t) { return t.read.SetupSpace(300)->m_ulCapacity; }),
        row(never, [](Things& t) { t.brief.initForAlloc(); }),
        row(throws, [](Things& t) { t.s.AssureSpace(301); }),
        row(never, [](Things& t) { t.s.freeSecText(); }),

        row(throws, [](Things& t) { t.buffer.rewind(), t.out << t.s; }),
        row(throws, [](Things& t) { return t.buffer.rewind(), t.in >> t.read, t.read; }),
        row(throws, [](Things& t) { return t.buffer.rewind(), getline(t.in, t.read), t.read; }),
        row(throws, [](Things& t) { return t.buffer.rewind(), getline(t.in, t.read, '\n'), t.read; }),

        row(never, [](Things&) { return VynUStringList(); }),
        row(never, [](Things& t) { return VynUStringList(std::move(t.list)); }),
        row(throws, [](Things& t) { return VynUStringList(t.s); }),
        row(throws, [](Things& t) { return VynUStringList(t.s, unit); }),
        row(throws, [](Things& t) { return VynUStringList(t.s, t.brief); }),
        row(throws, [](Things& t) { return VynUStringList(t.list); }),
        row(throws, [](Things& t) { t.list = t.pair; }),
        row(throws, [](Things& t) { t.list = t.other; }),
        row(never, [](Things& t) { t.list = std::move(t.pair); }),
        row(never, [](Things& t) { t.list.clear(); }),
        row(never, [](Things& t) { return t.list.at(0).length(); }),
        row(never, [](Things& t) { t.list.erase(0); }),
        row(throws, [](Things& t) { t.list.append(t.s); }),
        row(throws, [](Things& t) { t.list.append(t.pair); }),
        row(throws, [](Things& t) { t.list.insert(0, t.s); }),
        row(throws, [](Things& t) { t.pair.insert(1, t.list); }),
        row(throws, [](Things& t) { return t.list.combine(t.brief); }),
    };
}

/// What one process tells another.
struct Account {
    long blocks;       ///< That are left when all objects are destroyed.
    unsigned failures; ///< Allocations that failed.
    Failure seen = never;
    std::size_t length;
    char16_t text[Things::huge + 10'000]; ///< What the call gave and changed.
};

/// Makes the call with no allocation to spend, with one, with two and so on until it has enough. Where something was built
/// meanwhile, that is not needed any more: then from the beginning.
Text failUntilDone(Row const& row, Things& things, Account& account) {
    Text const before = things.state();
    for (unsigned allocations = 0;;) {
        long const blocks = blocksInUse;
        try {
            Text const result = row.call(things, allocations);
            if (row.failure != gives || result != row.without)
                return result;
            account.seen = gives;
        } catch (std::bad_alloc const&) {
            account.seen = throws;
        }
        bool const same = things.state() == before;
        EXPECT_TRUE(same) << "changed, with " << allocations << " allocations";
        if (!same || ++account.failures == 20'000)
            return u"no end, or some memory is lost each time";
        allocations = blocksInUse > blocks ? 0 : allocations + 1;
    }
}

Text callOnSmallStack(Row const& row, Things& things) {
    Text result;
    auto call = [&] { result = row.call(things, unlimitedAllocations); };
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, SMALL_STACK);
    pthread_t thread;
    auto const start = [](void* argument) -> void* {
        (*static_cast<decltype(call)*>(argument))();
        return nullptr;
    };
    EXPECT_EQ(pthread_create(&thread, &attributes, start, &call), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    return result;
}

enum Way { whole, failing, onSmallStack };

/// Makes a call in a process of its own.
void makeCall(Row const& row, Way way, Account& account) {
    std::fflush(stdout);
    bool const failedBefore = testing::Test::HasFailure();
    pid_t const child = fork();
    if (child == 0) {
        long const blocks = blocksInUse;
        {
            Things things;
            Text told = way == failing        ? failUntilDone(row, things, account)
                        : way == onSmallStack ? callOnSmallStack(row, things)
                                              : row.call(things, unlimitedAllocations);
            told += things.state();
            EXPECT_LE(told.size(), std::size(account.text));
            account.length = told.copy(account.text, std::size(account.text));
        }
        account.blocks = blocksInUse - blocks;
        std::fflush(stdout);
        _exit(testing::Test::HasFailure() && !failedBefore);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

/// Makes each call in all ways, which have to come to the same.
void makeCalls(std::vector<Row> const& rows) {
    auto* const accounts = static_cast<Account*>(
        mmap(nullptr, 3 * sizeof(Account), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    auto const told = [&](Way way) { return std::u16string_view(accounts[way].text, accounts[way].length); };
    unsigned failures = 0;
    for (Row const& row : rows) {
        SCOPED_TRACE(testing::Message() << __FILE__ << ':' << row.line << ", call " << &row - rows.data());
        for (Way const way : {whole, failing, onSmallStack}) {
            accounts[way] = {};
            makeCall(row, way, accounts[way]);
        }
        EXPECT_EQ(told(failing), told(whole));
        EXPECT_EQ(told(onSmallStack), told(whole));
        EXPECT_EQ(accounts[failing].blocks, accounts[whole].blocks) << "not released";
        EXPECT_EQ(accounts[failing].seen, row.failure) << accounts[failing].failures << " failures";
        failures += accounts[failing].failures;
    }
    munmap(accounts, 3 * sizeof(Account));
    std::printf("%u allocations failed in %zu calls\n", failures, rows.size());
}

TEST(Faults, LeaveConvertersAsTheyWere) {
    makeCalls(converterRows());
}
TEST(Faults, AreToldByFunctionsAndTheRegistry) {
    makeCalls(charSetRows());
}
TEST(Faults, LeaveStringsAndListsAsTheyWere) {
    makeCalls(stringRows());
}

} // namespace

#pragma once

#include <vynulib/LookupTable.h>
#include <vynulib/VynCharSetConverter.h>

#include <atomic>
#include <pthread.h>

/// Base of the multibyte sets within the Basic Multilingual Plane: owns the tables in both directions, which are built
/// from a compiled map at the first conversion. An instance without a map converts nothing.
class VYNULIB_API VynCharSetConverterMBCS : public VynCharSetConverter {
public:
    /// `table`: pairs of a code and its UTF-16 unit, ended by the pair (0, 0). It must outlive the converter. Of two
    /// pairs with the same code or unit the later counts in that direction.
    constexpr VynCharSetConverterMBCS(unsigned short const* table, VynCharSet cs) noexcept
        : VynCharSetConverter(cs), m_pTable(table) {}

    /// A converter that knows its map by name only and so has none.
    constexpr VynCharSetConverterMBCS(char const* name, VynCharSet cs) noexcept
        : VynCharSetConverter(cs), m_pName(name) {}

    ~VynCharSetConverterMBCS() override;

    /// Builds the tables, if they are not there yet. Conversions call it themselves.
    virtual void load();

protected:
    using Table = LookupTable<unsigned short>;

    /// Unit of each code. Null until `load`, and for good without a map.
    Table* forwardTable() const noexcept { return m_pForward.load(std::memory_order_acquire); }

    /// Code of each unit. There when the forward table is.
    Table* reverseTable() const noexcept { return m_pReverse; }

private:
    [[maybe_unused]] char const* m_pName = nullptr;
    std::atomic<Table*> m_pForward{nullptr}; // published last
    Table* m_pReverse = nullptr;
    unsigned short const* m_pTable = nullptr;
    pthread_mutex_t m_mutex = PTHREAD_MUTEX_INITIALIZER;
};

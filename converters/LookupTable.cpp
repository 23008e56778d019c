#include <vynulib/LookupTable.h>
#include <vynulib/LookupTableEx.h>

#include <algorithm>

namespace {

template <class T>
void storeInPage(T const*& page, T const* nullPage, unsigned index, T value) {
    if (page == nullPage)
        page = new T[256]();
    const_cast<T*>(page)[index] = value; // not the null page, so it is one that the table made above
}

template <class T, unsigned long Slots>
void deletePages(T const* (&pages)[Slots], T const* nullPage) {
    for (T const* page : pages)
        if (page != nullPage)
            delete[] page;
}

} // namespace

// Specialised, not instantiated: a template's static member would be one symbol for the whole process, and the library
// could not be unloaded.
template <>
constinit unsigned char const LookupTable<unsigned char>::m_gNullTable[256] = {};
template <>
constinit unsigned short const LookupTable<unsigned short>::m_gNullTable[256] = {};
template <>
constinit unsigned int const LookupTable<unsigned int>::m_gNullTable[256] = {};
template <>
constinit unsigned short const LookupTableEx<unsigned short>::m_gNullTable[256] = {};

template <class T>
LookupTable<T>::LookupTable() noexcept {
    std::fill_n(m_pPages, pageCount, &m_gNullTable[0]);
}

template <class T>
LookupTable<T>::~LookupTable() {
    deletePages(m_pPages, m_gNullTable);
}

template <class T>
void LookupTable<T>::insert(unsigned short key, T value) {
    storeInPage(m_pPages[key >> 8], m_gNullTable, key & 0xFFU, value);
}

template <class T>
LookupTableEx<T>::LookupTableEx() noexcept {
    std::fill_n(m_pPages, pageCount, &m_gNullTable[0]);
}

template <class T>
LookupTableEx<T>::~LookupTableEx() {
    deletePages(m_pPages, m_gNullTable);
}

template <class T>
void LookupTableEx<T>::insert(unsigned int key, T value) {
    if (key <= maxKey)
        storeInPage(m_pPages[key >> 8], m_gNullTable, key & 0xFFU, value);
}

template class LookupTable<unsigned char>;
template class LookupTable<unsigned short>;
template class LookupTable<unsigned int>;
template class LookupTableEx<unsigned short>;

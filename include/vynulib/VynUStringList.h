#pragma once

#include <vynulib/VynUString.h>

#include <vector>

/// An ordered list of strings, which it owns by value, with indices from 0.
///
/// An index that is too large throws `std::out_of_range` "invalid string list index given", a list that would grow
/// beyond `max_size()` `std::length_error` "exceed maximum string list length", both before anything is changed. Memory
/// that runs out throws `std::bad_alloc` and leaves the list as it was. An argument may be an element of the list
/// itself. References and iterators end with the next change of the list. One list must not be used from two threads at
/// once, unless both only call const members.
class VYNULIB_API VynUStringList {
public:
    using iterator = std::vector<VynUString>::iterator;                             ///< Random access, to strings.
    using const_iterator = std::vector<VynUString>::const_iterator;                 ///< The same, to read only.
    using reverse_iterator = std::vector<VynUString>::reverse_iterator;             ///< From the last to the first.
    using const_reverse_iterator = std::vector<VynUString>::const_reverse_iterator; ///< The same, to read only.

    VynUStringList() noexcept;                       ///< Empty.
    VynUStringList(VynUStringList const& other);     ///< Copies of all elements.
    VynUStringList(VynUStringList&& other) noexcept; ///< Leaves `other` empty.
    /// One element, a copy of `text`, even if that is empty.
    VynUStringList(VynUString const& text);
    /// The fields of `text`, split at each unit `separator`. Each separator ends a field: ",a,,b," gives "",
    /// "a", "", "b"; after the last separator there is a field only if it is not empty, and an empty text has none.
    /// Occurrences do not overlap. Without a separator (0 or empty), the whole text is the one element. Here a
    /// `char` is a unit.
    VynUStringList(VynUString const& text, unsigned short separator);
    /// The fields of `text`, split at each occurrence of `separator`, by the same rules.
    VynUStringList(VynUString const& text, VynUString const& separator);
    virtual ~VynUStringList();

    VynUStringList& operator=(VynUStringList const& other);     ///< Copies of all elements.
    VynUStringList& operator=(VynUStringList&& other) noexcept; ///< Leaves `other` empty.
    /// Makes a copy of `text` the only element.
    VynUStringList& operator=(VynUString const& text);

    /// The elements.
    unsigned long size() const noexcept { return m_oStrings.size(); }
    /// The most elements that a list can hold.
    unsigned long max_size() const noexcept { return m_oStrings.max_size(); }
    void clear() noexcept; ///< Removes all elements.

    /// The element at `index`, which is not checked.
    VynUString const& operator[](unsigned long index) const { return m_oStrings[index]; }
    /// The element at `index`, which must be below `size()`.
    VynUString const& at(unsigned long index) const;

    /// Removes the element at `index`, which must be below `size()`. Those after it move down.
    VynUStringList& erase(unsigned long index);

    /// Adds a copy of `text` at the end.
    VynUStringList& append(VynUString const& text);
    /// Adds copies of the elements of `other` at the end, in order. A list appended to itself stays as it is.
    VynUStringList& append(VynUStringList const& other);

    /// Inserts a copy of `text` before the element at `index`; at the end if `index` is `size()`, which it must not
    /// exceed.
    VynUStringList& insert(unsigned long index, VynUString const& text);
    /// Inserts copies of the elements of `other`, in order. A list inserted into itself stays as it is, and an empty
    /// list may be inserted anywhere.
    VynUStringList& insert(unsigned long index, VynUStringList const& other);

    /// All elements in order as one text, with `separator` between each two. An empty list gives an empty text.
    VynUString combine(VynUString const& separator) const;

    iterator begin() noexcept { return m_oStrings.begin(); }                       ///< The first element.
    iterator end() noexcept { return m_oStrings.end(); }                           ///< Behind the last element.
    const_iterator begin() const noexcept { return m_oStrings.begin(); }           ///< The first element.
    const_iterator end() const noexcept { return m_oStrings.end(); }               ///< Behind the last element.
    reverse_iterator rbegin() noexcept { return m_oStrings.rbegin(); }             ///< The last element.
    reverse_iterator rend() noexcept { return m_oStrings.rend(); }                 ///< Before the first element.
    const_reverse_iterator rbegin() const noexcept { return m_oStrings.rbegin(); } ///< The last element.
    const_reverse_iterator rend() const noexcept { return m_oStrings.rend(); }     ///< Before the first element.

private:
    void requireRoomFor(unsigned long count) const;

    std::vector<VynUString> m_oStrings;
};

template <class Unit, vyn::IfUnit<Unit>>
VynUStringList VynUString::split(Unit separator) const {
    return split(static_cast<unsigned short>(separator));
}

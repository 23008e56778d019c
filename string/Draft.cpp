#include "string/Draft.h"

void VynUString::Draft::install(VynUString& string, unsigned short* array, unsigned long capacity,
                                unsigned long length) noexcept {
    releaseArray(string);
    string.m_oRep.m_uHeap = 1;
    string.m_oRep.m_pText = array;
    string.m_oRep.m_ulLength = length;
    string.m_oRep.m_ulCapacity = capacity;
    array[length] = 0;
    if (length < capacity)
        std::fill(array + length + 1, array + capacity + 1, zeroUnit);
}

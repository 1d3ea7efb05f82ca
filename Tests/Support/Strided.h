#pragma once

#include "ZmStridedData.h"

#include <string.h>

#include <vector>

/// Elements at any stride in a buffer of exactly their size, so that the sanitizers see every access beside them.
template <class T>
class Strided {
public:
    Strided(const std::vector<T>& elements, unsigned int stride)
        : m_Bytes((elements.empty() ? 0 : elements.size() - 1) * stride + sizeof(T), 0x55), m_Stride(stride)
    {
        for (size_t i = 0; i < elements.size(); ++i) {
            memcpy(&m_Bytes[i * stride], &elements[i], sizeof(T));
        }
    }
    ZmStridedData Data() { return {m_Bytes.data(), m_Stride}; }
    T operator[](size_t i) const
    {
        T element;
        memcpy(&element, &m_Bytes[i * m_Stride], sizeof(T));
        return element;
    }
    /// Whether the bytes between the elements are as they were.
    bool GapsAreIntact() const
    {
        for (size_t i = 0; i < m_Bytes.size(); ++i) {
            if (i % m_Stride >= sizeof(T) && m_Bytes[i] != 0x55) {
                return false;
            }
        }
        return true;
    }

private:
    std::vector<unsigned char> m_Bytes;
    unsigned int m_Stride;
};

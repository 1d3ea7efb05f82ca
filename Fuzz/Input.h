#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <algorithm>

/// What a fuzz target reads its choices from; zeros follow the end.
class Input {
public:
    Input(const uint8_t* data, size_t size) : m_Data(data), m_Size(size) {}

    uint8_t Byte()
    {
        uint8_t res = 0;
        Fill(&res, 1);
        return res;
    }
    uint32_t Word()
    {
        uint32_t res = 0;
        Fill(&res, sizeof(res));
        return res;
    }
    void Fill(void* res, size_t size)
    {
        const size_t given = std::min(size, m_Size);
        if (size != 0) {  // no bytes may go into null
            memset(res, 0, size);
        }
        if (given != 0) {
            memcpy(res, m_Data, given);
        }
        m_Data += given;
        m_Size -= given;
    }

private:
    const uint8_t* m_Data;
    size_t m_Size;
};

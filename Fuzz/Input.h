#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <algorithm>

/// The source of a fuzz target's choices. Beyond the end it yields zeros.
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
        if (given != 0) {
            memcpy(res, m_Data, given);
        }
        if (size != given) {
            memset(static_cast<char*>(res) + given, 0, size - given);
        }
        m_Data += given;
        m_Size -= given;
    }

private:
    const uint8_t* m_Data;
    size_t m_Size;
};

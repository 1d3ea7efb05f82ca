#pragma once

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <string>

/// Ends the program, and so reports the input, unless a result is what it must be.
inline void Demand(bool condition, int line = __builtin_LINE())
{
    if (!condition) {
        fprintf(stderr, "line %d demands otherwise\n", line);
        abort();
    }
}

/// The source of a fuzz target's choices. Beyond the end it yields zeros.
class Input {
public:
    Input(const uint8_t* data, size_t size) : m_Data(data), m_Size(size) {}

    uint8_t Byte() { return As<uint8_t>(); }
    uint32_t Word() { return As<uint32_t>(); }
    template <class Value>
    Value As()
    {
        Value res;
        Fill(&res, sizeof(res));
        return res;
    }
    /// A number from 0 to `largest`, which is at most 65535.
    int UpTo(int largest)
    {
        uint16_t res = 0;
        Fill(&res, largest > UINT8_MAX ? 2 : 1);
        return res % (largest + 1);
    }
    std::string Text(int length)
    {
        std::string res(std::min(size_t(length), m_Size), 0);
        Fill(&res[0], res.size());
        return res;
    }
    std::string Rest() { return Text(int(m_Size)); }
    bool IsEmpty() const { return m_Size == 0; }
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

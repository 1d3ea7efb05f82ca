#include "Logging/PlainFormat.h"

#include <charconv>
#include <stddef.h>
#include <string.h>

namespace zm {
namespace {

/// A buffer of limited size. The last character is reserved for the terminator.
class Room {
public:
    Room(char* begin, int size) : m_At(begin), m_End(begin + size - 1) {}

    bool Put(const char* text, size_t length)
    {
        if (length > size_t(m_End - m_At)) {
            return false;
        }
        memcpy(m_At, text, length);
        m_At += length;
        return true;
    }
    template <class Number>
    bool Put(Number value)
    {
        const std::to_chars_result result = std::to_chars(m_At, m_End, value);
        m_At = result.ptr;
        return result.ec == std::errc();
    }
    void Finish() { *m_At = 0; }

private:
    char* m_At;
    char* const m_End;
};

}  // namespace

bool FormatPlain(char* res, int size, const char* format, va_list arguments)
{
    Room room(res, size);
    bool fits = true;
    for (const char* percent; fits && (percent = strchr(format, '%')) != nullptr; format = percent + 2) {
        fits = room.Put(format, size_t(percent - format));
        switch (percent[1]) {
        case 'd':
        case 'i': fits = fits && room.Put(va_arg(arguments, int)); break;
        case 'u': fits = fits && room.Put(va_arg(arguments, unsigned)); break;
        case 's': {
            const char* text = va_arg(arguments, const char*);
            fits = fits && text != nullptr && room.Put(text, strlen(text));
            break;
        }
        case 'c': {
            const char character = char(va_arg(arguments, int));
            fits = fits && room.Put(&character, 1);
            break;
        }
        case '%': fits = fits && room.Put(percent, 1); break;
        default: return false;
        }
    }
    if (!fits || !room.Put(format, strlen(format))) {
        return false;
    }
    room.Finish();
    return true;
}

bool EndsInConversion(const char* format)
{
    for (const char* percent = strchr(format, '%'); percent != nullptr;) {
        const char* type = percent + 1 + strspn(percent + 1, "-+ #'0123456789.*hlLqjzt");
        if (*type == 0) {
            return true;
        }
        percent = strchr(type + 1, '%');
    }
    return false;
}

}  // namespace zm

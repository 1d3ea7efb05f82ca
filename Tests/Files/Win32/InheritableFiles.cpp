#include <stdint.h>
#include <windows.h>

int InheritableFiles();

// Handles are small multiples of four.
int InheritableFiles()
{
    int count = 0;
    for (uintptr_t number = 4; number < 8192; number += 4) {
        const HANDLE handle = reinterpret_cast<HANDLE>(number);
        DWORD flags = 0;
        count += GetHandleInformation(handle, &flags) != 0 && (flags & HANDLE_FLAG_INHERIT) != 0 &&
                 GetFileType(handle) == FILE_TYPE_DISK;
    }
    return count;
}

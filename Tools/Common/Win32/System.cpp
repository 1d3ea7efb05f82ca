#include "System.h"

#include "Text.h"

#include <fcntl.h>
#include <io.h>
#include <string.h>
#include <windows.h>

#include <algorithm>
#include <system_error>

bool IsTerminal(FILE* stream)
{
    // Other character devices, such as NUL, have no console mode.
    DWORD mode;
    return GetConsoleMode(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream))), &mode) != 0;
}

void UseBytes(FILE* stream)
{
    _setmode(_fileno(stream), _O_BINARY);
}

// The temporary folder is the user's own, and so is what is made in it.
bool MakePrivateFolder(const std::string& path)
{
    const bool made = CreateDirectoryA(path.c_str(), nullptr) != 0;
    if (!made && GetLastError() != ERROR_ALREADY_EXISTS) {
        throw Failure("cannot make the folder " + Printable(path) + ": " + LastError());
    }
    return made;
}

bool IsLink(const std::string& path)
{
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

// Device names are reserved in every folder and with every extension. A colon selects a stream of a file. Dots and
// spaces at the end are dropped.
bool IsSpecialName(const std::string& name)
{
    std::string stem = name.substr(0, name.find('.'));
    stem.erase(stem.find_last_not_of(' ') + 1);
    std::transform(stem.begin(), stem.end(), stem.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? char(c - 32) : c; });
    static const char* const kDevices[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
    const bool device = std::any_of(std::begin(kDevices), std::end(kDevices), [&](const char* d) { return stem == d; });
    const bool port = stem.size() >= 4 && (stem.compare(0, 3, "COM") == 0 || stem.compare(0, 3, "LPT") == 0) &&
                      (stem.size() == 4 || static_cast<unsigned char>(stem[3]) >= 0x80);
    const bool control = std::any_of(name.begin(), name.end(), [](char c) { return c > 0 && c < ' '; });
    return device || port || control || name.find_first_of("<>:\"|?*") != std::string::npos || name.back() == '.' ||
           name.back() == ' ';
}

std::string LastError()
{
    return std::system_category().message(int(GetLastError()));
}

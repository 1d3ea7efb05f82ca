#include "Spool.h"

#include "System.h"
#include "Text.h"

#include <filesystem>
#include <random>

namespace fs = std::filesystem;

namespace {

void Copy(FILE* from, FILE* to)
{
    char bytes[1 << 16];
    size_t size = 0;
    while ((size = std::fread(bytes, 1, sizeof(bytes), from)) != 0) {
        if (std::fwrite(bytes, 1, size, to) != size) {
            throw Failure("cannot write: " + LastError());
        }
    }
    if (std::ferror(from) != 0 || std::fflush(to) != 0) {
        throw Failure("cannot copy: " + LastError());
    }
}

typedef std::unique_ptr<FILE, int (*)(FILE*)> OpenFile;

OpenFile OpenAt(const std::string& path, const char* mode)
{
    OpenFile res(std::fopen(path.c_str(), mode), std::fclose);
    if (!res) {
        throw Failure("cannot use " + Printable(path) + ": " + LastError());
    }
    return res;
}

}  // namespace

Spool::Spool()
{
    std::random_device random;
    do {
        m_Folder = (fs::temp_directory_path() / ("zmarchive" + std::to_string(random()))).string();
    } while (!MakePrivateFolder(m_Folder));
}

Spool::~Spool()
{
    std::error_code ignored;
    fs::remove_all(m_Folder, ignored);
}

void Spool::CopyFrom(FILE* stream) const
{
    UseBytes(stream);
    const OpenFile file = OpenAt(Path(), "wb");
    Copy(stream, file.get());
}

void Spool::CopyTo(FILE* stream) const
{
    UseBytes(stream);
    const OpenFile file = OpenAt(Path(), "rb");
    Copy(file.get(), stream);
}

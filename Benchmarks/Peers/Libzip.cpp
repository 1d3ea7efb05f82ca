// Archives with uncompressed members.

#include "../Harness.h"
#include "../TestFiles.h"

#include <stdexcept>
#include <zip.h>

namespace bench {
namespace {

const std::string& ZipFile()
{
    static const std::string path = [] {
        const std::string name = TestFolder() + "/members.zip";
        zip_t* zip = zip_open(name.c_str(), ZIP_CREATE, nullptr);
        for (const Member& member : ArchiveMembers()) {
            zip_source_t* source = zip_source_buffer(zip, member.bytes, member.size, 0);
            const zip_int64_t index = zip_file_add(zip, member.name.c_str(), source, 0);
            zip_set_file_compression(zip, zip_uint64_t(index), ZIP_CM_STORE, 0);
        }
        if (zip_close(zip) != 0) {
            throw std::runtime_error("no room for " + name);
        }
        return name;
    }();
    return path;
}

zip_t* Opened()
{
    static zip_t* const zip = zip_open(ZipFile().c_str(), ZIP_RDONLY, nullptr);
    return zip;
}

void Open(const Work& w)
{
    zip_t* zip = zip_open(ZipFile().c_str(), ZIP_RDONLY, nullptr);
    *static_cast<float*>(w.dst) = float(zip_get_num_entries(zip, 0));
    zip_discard(zip);
}

void Find(const Work& w)
{
    const std::vector<Member>& members = ArchiveMembers();
    const int* order = static_cast<const int*>(w.extra);
    zip_t* zip = Opened();
    int found = 0;
    for (int i = 0; i < w.count; ++i) {
        found += zip_name_locate(zip, members[size_t(order[i])].name.c_str(), 0) >= 0;
    }
    *static_cast<float*>(w.dst) = float(found);
}

void FindToRead(const Work& w)
{
    const std::vector<Member>& members = ArchiveMembers();
    const int* order = static_cast<const int*>(w.extra);
    int found = 0;
    for (int i = 0; i < w.count; ++i) {
        zip_file_t* file = zip_fopen(Opened(), members[size_t(order[i])].name.c_str(), 0);
        found += file != nullptr;
        zip_fclose(file);
    }
    *static_cast<float*>(w.dst) = float(found);
}

void ReadMembers(const Work& w, const int* order)
{
    static unsigned char bytes[kLargestMember];
    const std::vector<Member>& members = ArchiveMembers();
    unsigned sum = 0;
    for (int i = 0; i < w.count; ++i) {
        const Member& member = members[size_t(order != nullptr ? order[i] : i)];
        zip_file_t* file = zip_fopen(Opened(), member.name.c_str(), 0);
        const zip_int64_t size = zip_fread(file, bytes, member.size);
        sum += size > 0 ? bytes[size - 1] : 0;
        zip_fclose(file);
    }
    *static_cast<float*>(w.dst) = float(sum % 65536);
}

void ReadRandom(const Work& w)
{
    ReadMembers(w, static_cast<const int*>(w.extra));
}

void ReadInOrder(const Work& w)
{
    ReadMembers(w, nullptr);
}

constexpr Entry kEntries[] = {
    {"Archive/Open", Open},
    {"Archive/Find", Find},
    {"Archive/FindToRead", FindToRead},
    {"Archive/ReadRandom", ReadRandom},
    {"Archive/ReadInOrder", ReadInOrder},
};

}  // namespace

extern const Contender kLibzip;
constexpr Contender kLibzip{"libzip", Role::PEER, kEntries};

}  // namespace bench

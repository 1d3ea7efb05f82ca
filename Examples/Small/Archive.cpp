// Ships the files of a level in one archive. The reader takes a stream, which may be a file on disk, while the level is
// edited, or an entry of the archive, in the finished game.
#include <ZmMath.h>

#include <cstdio>

namespace {

struct LevelHeader {
    char magic[4];
    uint32_t rooms;
};

void PrintLevel(const char* from, ZmStream& stream)
{
    LevelHeader header = {};
    char title[32] = "";
    stream.Read(&header, sizeof(header));
    const unsigned int rest = stream.Size() - stream.Position();
    if (rest < sizeof(title)) {
        stream.Read(title, rest);
    }
    std::printf("%-12s  %.4s, %u rooms, \"%s\"\n", from, header.magic, unsigned(header.rooms), title);
}

class Percentage : public ZmBigFile::ProgressionCallback {
public:
    void Progress(int percent) override { last = percent; }
    int last = 0;
};

}  // namespace

int main()
{
    const LevelHeader header = {{'L', 'E', 'V', '1'}, 12};
    ZmFile file;
    file.Open("cellar.lev", ZmFile::WRITEONLY);
    file.Write(&header, sizeof(header));
    file.Write("The Cellar", 10);
    file.Close();

    file.Open("cellar.lev", ZmFile::READONLY);
    PrintLevel("from a file:", file);
    file.Close();

    ZmBigFile archive;
    archive.Open("levels.zmbg", 1);  // creates an empty archive
    archive.Append("Cellar.lev", "cellar.lev", 0, 0);
    archive.Append("Credits.txt", "Written by the fireside.\n", 25);
    Percentage percentage;
    const int saved = archive.Save(nullptr, &percentage);  // also closes it
    std::printf("archive %s, %d %%\n", saved ? "saved" : "NOT saved", percentage.last);

    archive.Open("levels.zmbg", 0);
    for (int i = 0; i < archive.GetEntryCount(); ++i) {
        std::printf("  %-12s %3u bytes\n", archive.GetEntryName(i), archive.GetEntrySize(i));
    }

    // Names are found in upper and lower case, and without the folder that the engine asks for.
    ZmSubFile entry;
    if (archive.Find("Data/Levels/CELLAR.LEV", &entry)) {
        PrintLevel("from inside:", entry);
    }
    std::printf("attic.lev is %s\n", archive.Find("attic.lev", &entry) ? "there" : "not there");

    // Cleans up; no file may be open for that.
    archive.Open("cellar.lev", 0);
    ZmDeleteFile("levels.zmbg");
    ZmDeleteFile("cellar.lev");
}

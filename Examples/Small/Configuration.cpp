// The settings of a game: defaults built into the program, a text file that the player may edit, and a change in the
// options menu that is saved to that file. Everything happens in the current folder.
#include <ZmMath.h>

#include <cstdio>

namespace {

constexpr const char* kFile = "game.cfg";

int GetInteger(const ZmConfiguration& settings, const char* section, const char* name, int otherwise)
{
    const ZmConfigurationSection* found = settings.GetSubSection(section, 1);
    const ZmConfigurationEntry* entry = found != nullptr ? found->GetEntry(name) : nullptr;
    int value;
    return entry != nullptr && entry->GetValueAsInteger(value) ? value : otherwise;
}

void WritePlayersFile()
{
    ZmFile file;
    file.Open(kFile, ZmFile::OpenMode(ZmFile::WRITEONLY | ZmFile::TEXT));
    file.Printf("# my settings\nplayer = Ada\n<Video>\nWidth=1280\n<Shadows>\nSize=many\n</Shadows>\n</Video>\n");
    file.Close();
}

void Print(const char* path)
{
    ZmFile file;
    file.Open(path, ZmFile::OpenMode(ZmFile::READONLY | ZmFile::TEXT));
    char line[256];
    while (file.GetString(line, sizeof(line))) {
        std::printf("    %s", line);
    }
}

}  // namespace

int main()
{
    WritePlayersFile();

    ZmConfiguration settings(2);
    int line;
    XString error;
    const int read = settings.BuildFromFile(kFile, line, error);
    std::printf("%s: %s, %d lines\n", kFile, read ? "read" : error.Text(), line);

    const int width = GetInteger(settings, "Video", "Width", 640),
              height = GetInteger(settings, "Video", "Height", 480);
    std::printf("%d x %d for %s\n", width, height, settings.GetEntry("player", 0)->GetValue());
    std::printf("shadows of %d texels\n", GetInteger(settings, "Video.Shadows", "Size", 512));

    // The menu changes existing entries and adds missing ones.
    ZmConfigurationEntry* old = nullptr;
    settings.AddEntry("Video", "Width", 1920, &old);
    if (old != nullptr) {
        old->SetValue(1920);
    }
    settings.AddEntry("Video", "Height", 1080);
    settings.AddEntry("Sound", "Volume", 0.75f);
    std::puts(settings.SaveToFile(kFile) ? "saved:" : "NOT saved:");
    Print(kFile);

    // Errors are reported with their line, counted from 0.
    if (!settings.BuildFromMemory("player = Bob\n<Video>\nWidth 800\n</Video>\n\n", line, error)) {
        std::printf("line %d: %s\n", line, error.Text());
    }
    ZmDeleteFile(kFile);
}

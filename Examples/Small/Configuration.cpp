// The settings of a game: defaults built into the program, a text file that the player may edit, and a change in the
// options menu that is saved to that file, whose comments stay. Everything happens in the current folder.
#include <ZmMath.h>

#include <cstdio>

namespace {

constexpr const char* kFile = "game.cfg";

void WritePlayersFile()
{
    ZmFile file;
    file.Open(kFile, ZmFile::OpenMode(ZmFile::WRITEONLY | ZmFile::TEXT));
    file.Printf(
        "# my settings\nplayer = Ada\n\n<Video>\n  Width=1280    \n<Shadows>\nSize=many\n</Shadows>\n</Video>\n");
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
    settings.AddDefaultEntry("Video", "Width", 640);
    settings.AddDefaultEntry("Video", "Height", 480);
    settings.AddDefaultEntry("Video.Shadows", "Size", 512);
    int line;
    XString error;
    const int read = settings.BuildFromFile(kFile, line, error);
    std::printf("%s: %s, %d lines\n", kFile, read ? "read" : error.Text(), line);

    std::printf("%d x %d for %s\n", settings.GetInt("Video.Width"), settings.GetInt("Video.Height"),
                settings.GetText("player"));
    std::printf("shadows of %d texels\n", settings.GetInt("Video.Shadows.Size"));
    int size;
    if (!settings.GetInt("Video.Shadows.Size", size, error)) {
        std::printf("    %s\n", error.Text());
    }

    // The menu changes existing entries and adds missing ones.
    settings.SetInt("Video.Width", 1920);
    settings.SetInt("Video.Height", 1080);
    settings.SetFloat("Sound.Volume", 0.75f);
    std::puts(settings.UpdateFile(kFile, &error) ? "saved:" : error.Text());
    Print(kFile);

    // Errors are reported with their line, counted from 0.
    if (!settings.BuildFromMemory("player = Bob\n<Video>\nWidth 800\n</Video>\n\n", line, error)) {
        std::printf("line %d: %s\n", line, error.Text());
    }
    ZmDeleteFile(kFile);
}

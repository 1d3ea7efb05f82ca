// Saves something in a folder, for the recorder of system calls.
//
//     ZmSaves archive|configuration|settings <folder> <text>

#include "ZmBigFile.h"
#include "ZmConfig.h"
#include "ZmConfiguration.h"

#include <stdlib.h>
#include <string.h>

#include <string>

namespace {

int SaveArchive(const std::string& folder, const char* text)
{
    const std::string path = folder + "/saved.zmbg", bytes(100000, *text);
    ZmBigFile archive;
    archive.Open(path.c_str(), 1);
    archive.Remove("text");
    return archive.Append("text", text, unsigned(strlen(text))) != 0 &&
           archive.Append((std::string("bytes of ") + text).c_str(), bytes.data(), unsigned(bytes.size())) != 0 &&
           archive.Save(nullptr, nullptr) != 0;
}

int SaveConfiguration(const std::string& folder, const char* text)
{
    ZmConfiguration tree(2);
    for (int i = 0; i < 5000; ++i) {
        tree.AddEntry("a.b", ("entry " + std::to_string(i)).c_str(), text);
    }
    return tree.SaveToFile((folder + "/saved.cfg").c_str());
}

int SaveSettings(const std::string& folder, const char* text)
{
    setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    ZmConfig config;
    config.OpenSection("PowerLoss", ZmConfig::MODE_READWRITE);
    config.WriteStringEntry("text", text);
    config.CloseSection(nullptr);
    return 1;
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string what = argc == 4 ? argv[1] : "";
    const auto save = what == "archive"         ? SaveArchive
                      : what == "configuration" ? SaveConfiguration
                      : what == "settings"      ? SaveSettings
                                                : nullptr;
    return save == nullptr ? 2 : save(argv[2], argv[3]) == 0;
}

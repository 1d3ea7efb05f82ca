#include "Results.h"
#include "Scenarios.h"
#include "ZmMath.h"

#include <string.h>

namespace fs = std::filesystem;

namespace {

const std::string kLongValue(300, 'v'), kConfiguration = "a = 1\n<Section>\nb = 2\nc = 3\n<" + kLongName +
                                                         ">\n" + kLongName + " = 4\nd = " + kLongValue +
                                                         "\n</" + kLongName + ">\n</Section>\ne = 5\n";

void MakeConfiguration()
{
    MakeFile("test.cfg", kConfiguration);
}

bool HasAll(const ZmConfiguration& tree)
{
    const ZmConfigurationSection* section = tree.GetSubSection("Section", 0);
    const ZmConfigurationSection* below = section != nullptr ? section->GetSubSection(kLongName.c_str()) : nullptr;
    const struct {
        const ZmConfigurationSection* section;
        const char *name, *value;
    } kEntries[] = {
        {section, "b", "2"}, {section, "c", "3"}, {below, kLongName.c_str(), "4"}, {below, "d", kLongValue.c_str()}};
    bool res = tree.GetEntry("a", 0) != nullptr;
    for (const auto& row : kEntries) {
        const ZmConfigurationEntry* entry = row.section != nullptr ? row.section->GetEntry(row.name) : nullptr;
        res = res && entry != nullptr && strcmp(entry->GetValue(), row.value) == 0;
    }
    return res;
}

bool g_Whole = true;

int LoadConfiguration()
{
    ZmConfiguration tree(2);
    XString error;
    int line = 0;
    const int res = tree.BuildFromFile("test.cfg", line, error);
    g_Whole = HasAll(tree);
    return res;
}

int LoadMemory()
{
    ZmConfiguration tree(2);
    XString error;
    int line = 0;
    const int res = tree.BuildFromMemory(kConfiguration.c_str(), line, error);
    g_Whole = HasAll(tree);
    return res;
}

const char* CheckLoaded(int res)
{
    return res != 0 && !g_Whole ? kPartial : nullptr;
}

int SaveConfiguration()
{
    ZmConfiguration tree(0);
    const bool added = tree.AddEntry(nullptr, "a", 1) && tree.AddEntry("S", "b", "a text of some length, on the heap");
    return added && tree.SaveToFile("test.cfg");
}

const char* CheckConfiguration(int res)
{
    return OldOrNew("test.cfg", res, kConfiguration,
                    "a = 1\n\n<S>\n\tb = a text of some length, on the heap\n</S>\n") != nullptr &&
                   OldOrNew("test.cfg", res, kConfiguration,
                            "a = 1\n<S>\nb = a text of some length, on the heap\n</S>\n") != nullptr
               ? kWrongBytes
               : nullptr;
}

void MakeLinkedConfiguration()
{
    MakeFile("target", kConfiguration);
    fs::create_symlink("target", "test.cfg");
}

void MakeConfigurationOfOthers()
{
    MakeConfiguration();
    GiveAway("test.cfg");
}

const char* CheckLinkedConfiguration(int res)
{
    return fs::is_symlink("test.cfg") ? CheckConfiguration(res) : "the link is lost";
}

int LoadTwice()
{
    ZmConfiguration tree(2);
    XString error;
    int line = 0;
    const int res = tree.BuildFromFile("test.cfg", line, error) &&
                    tree.BuildFromMemory(kConfiguration.c_str(), line, error) &&
                    tree.BuildFromFile("test.cfg", line, error);
    g_Whole = HasAll(tree);
    return res;
}

constexpr int kMany = 900;  // more than one page of small blocks holds

int SaveLarge()
{
    ZmConfiguration tree(4);
    char name[20];
    for (int i = 0; i < kMany; ++i) {
        snprintf(name, sizeof(name), "name %d", i);
        if (!tree.AddEntry(i % 2 == 0 ? "one.two" : "three", name, i)) {
            return 0;
        }
    }
    return tree.SaveToFile("test.cfg");
}

const char* CheckLarge(int res)
{
    const std::string bytes = BytesOf("test.cfg");
    if (res == 0) {
        return bytes == kConfiguration ? nullptr : kLost;
    }
    return std::count(bytes.begin(), bytes.end(), '=') == kMany ? nullptr : kPartial;
}

int SaveTwice()
{
    ZmConfiguration tree(0);
    return tree.AddEntry(nullptr, "a", 1) && tree.SaveToFile("new.cfg") && tree.AddEntry(nullptr, "b", 2) &&
           tree.SaveToFile("new.cfg");
}

const char* CheckSavedTwice(int res)
{
    const std::string bytes = BytesOf("new.cfg");
    return bytes == "a = 1\nb = 2\n" || (res == 0 && (bytes.empty() || bytes == "a = 1\n")) ? nullptr : kWrongBytes;
}

/// A value that the format cannot keep: the answer is 1 only if the value was not added.
int AskWhetherSaved()
{
    ZmConfiguration tree(0);
    XString why;
    const bool added = tree.AddEntry("Section.Below", "name", "two\nlines, in a text of some length, on the heap") != 0;
    return tree.CanBeSaved(why) && added ? -1 : 1;
}

int UseDefaults()
{
    ZmConfiguration tree(0);
    const bool added = tree.AddDefaultEntry("S.T", "a", kLongValue.c_str()) && tree.AddDefaultEntry("S", "b", 2u) &&
                       tree.CreateDefaultSubSection("S", "U") != nullptr &&
                       tree.AddEntry("S.T", "c", kLongValue.c_str());
    const ZmConfigurationSection* section = tree.GetSubSection("S.T", 1);
    const ZmConfigurationEntry* entry = section != nullptr ? section->GetEntry("a") : nullptr;
    g_Whole = entry != nullptr && strcmp(entry->GetValue(), kLongValue.c_str()) == 0 &&
              section->GetEntry("c") != nullptr && tree.GetSubSection("S.U", 1) != nullptr;
    tree.ClearDefault();
    return added && tree.GetSubSection("S", 1) == nullptr;
}

int UseSectionAlone()
{
    ZmConfigurationSection root("root", nullptr);
    ZmConfigurationEntry *text = nullptr, *number = nullptr;
    root.AddEntry("text", kLongValue.c_str(), &text);
    root.AddEntry("number", 2.5f, &number);
    ZmConfigurationSection* below = root.CreateSubSection("below");
    const bool added = text != nullptr && number != nullptr && below != nullptr;
    g_Whole =
        root.GetEntry("text") == text && root.GetEntry("number") == number && root.GetSubSection("below") == below;
    delete root.RemoveSection("below");
    root.DeleteEntry("number");
    return added && root.GetNumberOfEntriesRecursive() == 1;
}

int SaveDataFile()
{
    ZmConfiguration tree(0);
    XString error;
    return tree.AddEntry(nullptr, "a", 1) && tree.SaveToDataFile("data.cfg") &&
           tree.BuildFromDataFile("data.cfg", error);
}

int EditConfiguration()
{
    ZmConfiguration tree(0);
    tree.AddEntry("S", "b", 1);
    tree.AddEntry("S.T", "c", 2.5f);
    tree.AddDefaultEntry("S", "d", 4u);
    tree.CreateSubSection("S", "U");
    delete tree.RemoveEntry("S", "b");
    tree.DeleteSection(nullptr, "S");
    tree.Clear();
    return tree.AddEntry(nullptr, "a", 1) && tree.GetEntry("a", 0) != nullptr;
}

int UseSettings()
{
    ZmConfig settings;
    settings.OpenSection("Trust", ZmConfig::MODE_READWRITE);
    settings.WriteStringEntry("name", "new value");
    return settings.ReadStringEntry("name", g_Bytes);
}

void MakeSettings()
{
    ZmConfig settings;
    settings.OpenSection("Trust", ZmConfig::MODE_READWRITE);
    settings.WriteStringEntry("name", "old value");
    settings.WriteStringEntry("other", "kept");
}

const char* CheckSettings(int res)
{
    if (res != -1 && strcmp(g_Bytes, "old value") != 0 && strcmp(g_Bytes, "new value") != 0) {
        return kWrongBytes;
    }
    ZmConfig settings;
    settings.OpenSection("Trust", ZmConfig::MODE_READ);
    char value[ZmConfig::kMaxValue] = "";
    settings.ReadStringEntry("other", value);
    return strcmp(value, "kept") == 0 ? nullptr : kLost;
}

int ReadSettings()
{
    ZmConfig settings;
    settings.OpenSection("Trust", ZmConfig::MODE_READ);
    return settings.ReadStringEntry("name", g_Bytes);
}

int UseSections()
{
    ZmConfig settings;
    int res = 0;
    for (const char* section : {"One", "One\\Two", "Three"}) {
        settings.OpenSection(section, ZmConfig::MODE_READWRITE);
        settings.WriteStringEntry("name", section);
        res += settings.ReadStringEntry("name", g_Bytes) != -1;
        settings.CloseSection(section);
    }
    settings.OpenSection("Long", ZmConfig::MODE_WRITE);
    settings.WriteStringEntry("name", kOther.c_str());  // more than the buffer of a file holds
    return res;
}

}  // namespace

const std::vector<Scenario> kConfigurationScenarios = {
    {"configuration loaded", MakeConfiguration, LoadConfiguration, CheckLoaded},
    {"configuration loaded from memory", Nothing, LoadMemory, CheckLoaded},
    {"configuration saved", MakeConfiguration, SaveConfiguration, CheckConfiguration},
    {"configuration behind a link saved", MakeLinkedConfiguration, SaveConfiguration, CheckLinkedConfiguration},
    {"configuration of another group saved", MakeConfigurationOfOthers, SaveConfiguration, CheckConfiguration},
    {"configuration loaded again", MakeConfiguration, LoadTwice, CheckLoaded},
    {"large configuration saved", MakeConfiguration, SaveLarge, CheckLarge},
    {"configuration saved twice", Nothing, SaveTwice, CheckSavedTwice},
    {"configuration asked whether it can be saved", Nothing, AskWhetherSaved,
     [](int res) { return res < 0 ? "a loss is denied" : Always(0); }},
    {"configuration with defaults", Nothing, UseDefaults, CheckLoaded},
    {"section alone", Nothing, UseSectionAlone, CheckLoaded},
    {"configuration data file", Nothing, SaveDataFile, Always},
    {"configuration edited", Nothing, EditConfiguration, Always},
    {"settings", MakeSettings, UseSettings, CheckSettings},
    {"settings of a new user", Nothing, UseSettings, Always},
    {"settings read", MakeSettings, ReadSettings, CheckSettings},
    {"settings in sections", Nothing, UseSections, Always},
};

#include "Settings.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

namespace {

const struct {
    const char* name;
    float CameraSettings::*field;
    float low, high;
} kCamera[] = {
    {"EyeHeight", &CameraSettings::eyeHeight, 0.1f, 50},
    {"LookDown", &CameraSettings::lookDown, -1, 1},
    {"FieldOfView", &CameraSettings::fieldOfView, 0.1f, 2.5f},
};

// The configuration does not record line numbers, so error messages search the text: for the line of an entry, or of
// the tag of a section if the name is empty; the last line if neither is found.
int LineOf(const std::string& scene, const std::string& section, const std::string& name)
{
    std::istringstream lines(scene);
    std::string next, current;
    int line = 0;
    while (std::getline(lines, next)) {
        ++line;
        XString text = next.c_str();
        text.Trim();
        const uint16_t end = text.RFind('>'), equal = text.Find('=');
        std::string entry;
        if (text[0] == '<' && text[1] == '/') {
            current.erase(current.find_last_of('.') != std::string::npos ? current.find_last_of('.') : 0);
            continue;
        }
        if (text[0] == '<' && end != XString::kNotFound) {
            current += (current.empty() ? "" : ".") + std::string(text.Text() + 1, end - 1u);
        } else if (text[0] != '#' && equal != XString::kNotFound) {
            XString left = text.Substring(0, equal);
            left.Trim();
            entry = left.Text();
        } else {
            continue;
        }
        if (current == section && entry == name) {
            break;
        }
    }
    return line;
}

class SettingsReader {
public:
    SettingsReader(const std::string& path, const std::string& text, Settings& settings)
        : m_Path(path), m_Text(text), m_Settings(settings)
    {
        // Text in memory keeps its carriage returns.
        m_Text.erase(std::remove(m_Text.begin(), m_Text.end(), '\r'), m_Text.end());
    }

    bool Run()
    {
        int line = 0;
        XString message;
        // The last line is not read, so one is appended.
        if (m_Tree.BuildFromMemory((m_Text + "\n\n").c_str(), line, message) == 0) {
            return FailAt(line + 1, message.Text());
        }
        return Sections() && Picture() && Camera() && Sun() && Models();
    }

    const std::string& Error() const { return m_Error; }

private:
    bool FailAt(int line, const std::string& message)
    {
        m_Error = m_Path + ":" + std::to_string(line) + ": " + message;
        return false;
    }

    bool Fail(const std::string& section, const std::string& name, const std::string& message)
    {
        return FailAt(LineOf(m_Text, section, name), section + (name.empty() ? "" : "." + name) + ": " + message);
    }

    // Calls use(entry) for each entry of the section until it returns false.
    template <class Use>
    bool ForEach(const char* section, Use&& use)
    {
        const ZmConfigurationSection* found = m_Tree.GetSubSection(section, 1);
        if (found == nullptr) {
            return Fail(section, "", "the section is missing");
        }
        auto position = found->BeginChildEntry();
        while (const ZmConfigurationEntry* entry = found->GetNextChildEntry(position)) {
            if (!use(*entry)) {
                return false;
            }
        }
        return true;
    }

    // Checks that the section has exactly these entries.
    bool HasOnly(const char* section, const std::vector<std::string>& names)
    {
        for (const std::string& name : names) {
            const ZmConfigurationSection* found = m_Tree.GetSubSection(section, 1);
            if (found == nullptr || found->GetEntry(name.c_str()) == nullptr) {
                return Fail(section, "", "has no " + name);
            }
        }
        return ForEach(section, [&](const ZmConfigurationEntry& entry) {
            for (const std::string& name : names) {
                if (name == entry.GetName()) {
                    return true;
                }
            }
            return Fail(section, entry.GetName(), "is unknown");
        });
    }

    const ZmConfigurationEntry& Entry(const char* section, const char* name) const
    {
        return *m_Tree.GetSubSection(section, 1)->GetEntry(name);
    }

    bool Int(const char* section, const char* name, int low, int high, int& res)
    {
        const ZmConfigurationEntry& entry = Entry(section, name);
        if (entry.GetValueAsInteger(res) != 0 && res >= low && res <= high) {
            return true;
        }
        return Fail(section, name, "must be from " + std::to_string(low) + " to " + std::to_string(high));
    }

    bool Float(const char* section, const char* name, float low, float high, float& res)
    {
        const ZmConfigurationEntry& entry = Entry(section, name);
        if (entry.GetValueAsFloat(res) != 0 && res >= low && res <= high) {
            return true;
        }
        char range[64];
        std::snprintf(range, sizeof(range), "must be from %g to %g", double(low), double(high));
        return Fail(section, name, range);
    }

    bool Vector(const char* section, const ZmConfigurationEntry& entry, ZmVector& res)
    {
        return std::sscanf(entry.GetValue(), "%f %f %f", &res.x, &res.y, &res.z) == 3 ||
               Fail(section, entry.GetName(), "must be three numbers");
    }

    bool Sections()
    {
        for (const char* top : {"Picture", "Camera", "Sun", "Models"}) {
            if (m_Tree.GetSubSection(top, 0) == nullptr) {
                return Fail(top, "", "the section is missing");
            }
        }
        auto position = m_Tree.BeginSections();
        while (const ZmConfigurationSection* section = m_Tree.GetNextSection(position)) {
            const std::string name = section->GetName();
            if (name != "Picture" && name != "Camera" && name != "Sun" && name != "Models") {
                return Fail(name, "", "is unknown");
            }
        }
        return true;
    }

    bool Picture()
    {
        return HasOnly("Picture", {"Width", "Height"}) &&
               Int("Picture", "Width", kMinSize, kMaxSize, m_Settings.width) &&
               Int("Picture", "Height", kMinSize, kMaxSize, m_Settings.height);
    }

    bool Camera()
    {
        return HasOnly("Camera", {"EyeHeight", "LookDown", "FieldOfView"}) &&
               std::all_of(std::begin(kCamera), std::end(kCamera), [&](const auto& number) {
                   return Float("Camera", number.name, number.low, number.high, m_Settings.camera.*number.field);
               });
    }

    bool Sun()
    {
        if (!HasOnly("Sun", {"Towards", "Colour"}) || !Vector("Sun", Entry("Sun", "Towards"), m_Settings.towardsSun) ||
            !Vector("Sun", Entry("Sun", "Colour"), m_Settings.sunColour)) {
            return false;
        }
        return m_Settings.towardsSun.y > 0 || Fail("Sun", "Towards", "the sun must stand above the ground");
    }

    bool Models()
    {
        return HasOnly("Models", {"MostTriangles"}) &&
               Int("Models", "MostTriangles", 1, 100000000, m_Settings.mostTriangles) && Colours() && Front();
    }

    bool Colours()
    {
        const bool done = ForEach("Models.Colours", [&](const ZmConfigurationEntry& entry) {
            m_Settings.colours.emplace_back();
            m_ColourNames.push_back(entry.GetName());
            return Vector("Models.Colours", entry, m_Settings.colours.back());
        });
        return done && (!m_Settings.colours.empty() || Fail("Models.Colours", "", "has no colours"));
    }

    bool Front()
    {
        return ForEach("Models.Front", [&](const ZmConfigurationEntry& entry) {
            Spot spot{};
            while (spot.colour < m_ColourNames.size() && m_ColourNames[spot.colour] != entry.GetName()) {
                ++spot.colour;
            }
            if (spot.colour == m_ColourNames.size()) {
                return Fail("Models.Front", entry.GetName(), "is none of the colours");
            }
            if (std::sscanf(entry.GetValue(), "%f %f %f %f", &spot.x, &spot.z, &spot.size, &spot.heading) != 4) {
                return Fail("Models.Front", entry.GetName(), "must be four numbers");
            }
            m_Settings.front.push_back(spot);
            return true;
        });
    }

    const std::string m_Path;
    std::string m_Text;
    Settings& m_Settings;
    ZmConfiguration m_Tree{2};
    std::vector<std::string> m_ColourNames;
    std::string m_Error;
};

}  // namespace

bool ReadCamera(const char* text, CameraSettings& res)
{
    CameraSettings read;
    int used = 0;
    const int found = std::sscanf(text, "%f,%f,%f%n", &read.eyeHeight, &read.lookDown, &read.fieldOfView, &used);
    if (found != 3 || text[used] != '\0') {
        return false;
    }
    for (const auto& number : kCamera) {
        if (!(read.*number.field >= number.low && read.*number.field <= number.high)) {
            return false;
        }
    }
    res = read;
    return true;
}

std::string CameraText(const CameraSettings& camera)
{
    XString text;
    text.Format("%.9g,%.9g,%.9g", double(camera.eyeHeight), double(camera.lookDown), double(camera.fieldOfView));
    return text.Text();
}

bool ReadSettings(const std::string& path, const std::string& text, Settings& settings, std::string& error)
{
    SettingsReader reader(path, text, settings);
    const bool done = reader.Run();
    error = reader.Error();
    return done;
}

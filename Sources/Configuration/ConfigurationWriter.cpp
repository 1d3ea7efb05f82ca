#include "Configuration/ConfigurationWriter.h"

#include "Configuration/ConfigurationLine.h"
#include "Configuration/TreeWriter.h"

namespace zm {

namespace {

bool IsBlank(char c)
{
    return c == ' ' || c == '\t';
}

/// Looks for what would be read differently from how it was written.
class FormatCheck {
public:
    const char* Reason() const { return m_Reason; }
    const char* Name() const { return m_Name; }
    const ZmConfigurationSection* Parent() const { return m_Parent; }

    bool Entry(const ZmConfigurationEntry& entry, unsigned)
    {
        return Holds(ReasonOf(entry), entry.GetName(), entry.GetParent());
    }

    bool BeginSection(const ZmConfigurationSection& section, unsigned)
    {
        const char* name = section.GetName();
        const char* reason = *name == '/'                     ? "the name of a section begins with '/'"
                             : strchr(name, '\n') != nullptr  ? "the name of a section has a line feed"
                             : strlen(name) + 3 > kMostOfLine ? "the name of a section is too long"
                                                              : nullptr;
        return Holds(reason, name, section.GetParent());
    }

    static bool EndSection(const ZmConfigurationSection&, unsigned) { return true; }

private:
    static constexpr size_t kMostOfLine = ConfigurationLine::kMaxLength;

    static bool HasBlankEnd(const char* text)
    {
        return *text != 0 && (IsBlank(*text) || IsBlank(text[strlen(text) - 1]));
    }

    static const char* ReasonOf(const ZmConfigurationEntry& entry)
    {
        const char *name = entry.GetName(), *value = entry.GetValue();
        if (*name == '#' || *name == '<') {
            return "the name of an entry begins with '#' or '<'";
        }
        if (strpbrk(name, "=\n") != nullptr) {
            return "the name of an entry has '=' or a line feed";
        }
        if (HasBlankEnd(name) || HasBlankEnd(value)) {
            return "an entry begins or ends with a blank";
        }
        if (strchr(value, '\n') != nullptr || (*value != 0 && value[strlen(value) - 1] == '\r')) {
            return "a value has a line feed, or ends with a carriage return";
        }
        return strlen(name) + 3 + strlen(value) > kMostOfLine ? "an entry is too long for a line" : nullptr;
    }

    /// Keeps the reason, which ends the walk. Returns whether there is none.
    bool Holds(const char* reason, const char* name, const ZmConfigurationSection* parent)
    {
        m_Reason = reason;
        m_Name = name;
        m_Parent = parent;
        return reason == nullptr;
    }

    const char* m_Reason = nullptr;
    const char* m_Name = "";
    const ZmConfigurationSection* m_Parent = nullptr;
};

}  // namespace

bool WriteConfiguration(ZmStream& res, const ZmConfigurationSection& root, unsigned indent)
{
    TreeWriter writer(res, indent);
    const bool done = TreeWalk<TreeWriter>(writer).Run(root);
    return writer.End() && done;
}

bool FormatHolds(const ZmConfigurationSection& root, XString& why)
{
    FormatCheck check;
    why = nullptr;
    if (TreeWalk<FormatCheck>(check).Run(root)) {
        return true;
    }
    if (check.Reason() == nullptr) {
        why = "out of memory";
        return false;
    }
    constexpr int kMostSections = 20;  // of which the path is shown
    XString path(check.Name());
    int shown = 0;
    const ZmConfigurationSection* section = check.Parent();
    for (; section->GetParent() != nullptr && shown < kMostSections; ++shown) {
        path = XString(section->GetName()) + "." + path;
        section = section->GetParent();
    }
    why << check.Reason() << ": " << path;
    return false;
}

}  // namespace zm

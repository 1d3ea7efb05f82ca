// Changes to the list of an archive beside a vector of names and bytes: entries appended, replaced, removed, reordered,
// saved and opened again.

#include "Input.h"
#include "ScratchFolder.h"
#include "Support/Texts.h"
#include "ZmBigFile.h"

#include <vector>

namespace {

struct Entry {
    std::string name, bytes;
};

typedef std::vector<Entry> Model;

Model::iterator FindEntry(Model& model, const std::string& name)
{
    return std::find_if(model.begin(), model.end(), [&](const Entry& e) { return e.name == Lower(name); });
}

void Compare(ZmBigFile& archive, const Model& model, bool isSaved)
{
    Demand(archive.GetEntryCount() == int(model.size()));
    for (size_t i = 0; i < model.size(); ++i) {
        const Entry& entry = model[i];
        Demand(archive.GetEntryName(int(i)) == entry.name && archive.GetEntrySize(int(i)) == entry.bytes.size());
        if (isSaved) {
            ZmSubFile sub;
            std::string bytes(entry.bytes.size(), 0);
            Demand(archive.GetEntryFile(int(i), &sub) == 1 && sub.IsValid() == !bytes.empty());
            Demand(sub.Read(&bytes[0], unsigned(bytes.size())) == bytes.size() && bytes == entry.bytes);
        }
        if (entry.name.find_first_of("/\\:") == std::string::npos) {
            Demand(archive.Find(("Some\\" + entry.name).c_str(), nullptr) == 1);
        }
    }
}

void AppendBytes(ZmBigFile& archive, Model& model, const std::string& name, const std::string& bytes)
{
    const bool isNew = FindEntry(model, name) == model.end();
    Demand(archive.Append(name.c_str(), bytes.data(), unsigned(bytes.size())) == isNew);
    if (isNew) {
        model.push_back({Lower(name), bytes});
    }
}

/// A file that cannot be read leaves an empty entry.
void AppendFile(ZmBigFile& archive, Model& model, const std::string& name, const std::string& path, int choice)
{
    const bool deferred = (choice & 1) != 0, replace = (choice & 2) != 0, missing = (choice & 4) != 0;
    const auto found = FindEntry(model, name);
    const bool accepted = found == model.end() || replace;
    const std::string file = missing ? path + ".missing" : path;
    Demand(archive.Append(name.c_str(), file.c_str(), deferred, replace) == (accepted && !missing));
    if (accepted) {
        const std::string bytes = missing ? "" : BytesOf(path);
        found == model.end() ? model.push_back({Lower(name), bytes}) : void(found->bytes = bytes);
    }
}

void LoadIndex(ZmBigFile& archive, Model& model, Input& input, const std::string& path)
{
    std::string list;
    Model front;
    while (!model.empty() && input.UpTo(7) != 0) {
        const auto entry = model.begin() + input.UpTo(255) % int(model.size());
        const bool isWritable = entry->name.find_first_of("\r\n") == std::string::npos;
        list += (isWritable ? entry->name : "no entry of this name") + '\n';
        if (isWritable) {
            front.push_back(*entry);
            model.erase(entry);
        }
    }
    MakeFile(path, list);
    Demand(archive.LoadIndex(path.c_str()) == 1);
    model.insert(model.begin(), front.begin(), front.end());
}

void SaveIndex(ZmBigFile& archive, const Model& model, const std::string& path)
{
    std::string expected;
    for (const Entry& entry : model) {
        expected += entry.name + '\n';
    }
    archive.SaveIndex(path.c_str(), 0);
    std::string list = BytesOf(path);
    list.erase(std::remove(list.begin(), list.end(), '\r'), list.end());
    expected.erase(std::remove(expected.begin(), expected.end(), '\r'), expected.end());
    Demand(list == expected);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const ScratchFolder scratch;
    static const std::string path = scratch / "archive", file = scratch / "file", list = scratch / "list";
    Input input(data, size);
    remove(path.c_str());
    MakeFile(file, input.Text(input.UpTo(20)));
    Model model;
    ZmBigFile archive;
    Demand(archive.Open(path.c_str(), 1) == 1);
    for (int step = 0; step < 10 && !input.IsEmpty(); ++step) {
        const int operation = input.UpTo(15);
        const std::string name = input.Text(input.UpTo(3)).c_str();
        if (operation < 4) {
            AppendBytes(archive, model, name, input.Text(input.UpTo(20)));
        } else if (operation < 8) {
            AppendFile(archive, model, name, file, input.Byte());
        } else if (operation < 10) {
            const auto found = FindEntry(model, name);
            Demand(archive.Remove(name.c_str()) == (found != model.end()));
            model.erase(found, found == model.end() ? found : found + 1);
        } else if (operation < 12) {
            const int place = input.UpTo(5);
            Demand(archive.RemoveEntry(place) == (place < int(model.size())));
            model.erase(model.begin() + std::min(place, int(model.size())),
                        model.begin() + std::min(place + 1, int(model.size())));
        } else if (operation < 14) {
            LoadIndex(archive, model, input, list);
        } else if (operation == 14) {
            SaveIndex(archive, model, list);
        } else {
            Demand(archive.Save(nullptr, nullptr) == 1 && archive.OpenExisting(path.c_str()) == 1);
        }
        Compare(archive, model, operation == 15);
    }
    Demand(archive.Save(nullptr, nullptr) == 1 && archive.OpenExisting(path.c_str()) == 1);
    Compare(archive, model, true);
    return 0;
}

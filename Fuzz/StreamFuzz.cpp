// A file, a span of it and a cached view of it beside an array of bytes with a position.

#include "Input.h"
#include "ScratchFolder.h"
#include "ZmCachedFile.h"
#include "ZmSubFile.h"

#include <stdio.h>

namespace {

constexpr int kLongest = 50;  // of one read or write

struct Model {
    bool Seek(int64_t target)
    {
        at = target >= 0 ? size_t(target) : at;
        return target >= 0;
    }
    size_t Origin(int mode) const { return mode == ZmStream::START ? 0 : mode == ZmStream::END ? bytes.size() : at; }
    /// The bytes from the position on; moves it behind them.
    std::string Read(size_t size)
    {
        const std::string res = at < bytes.size() ? bytes.substr(at, size) : "";
        at += res.size();
        return res;
    }
    void Write(const std::string& text)
    {
        bytes.resize(std::max(bytes.size(), text.empty() ? 0 : at + text.size()));
        bytes.replace(at, text.size(), text);
        at += text.size();
    }

    std::string bytes;
    size_t at = 0;
};

/// Reads all or nothing, except that the bytes before the end arrive in any case.
void TestRead(ZmStream& stream, Model& model, unsigned size)
{
    char buffer[kLongest];
    const std::string expected = model.Read(size);
    Demand(stream.Read(buffer, size) == (expected.size() == size ? size : 0));
    Demand(memcmp(buffer, expected.data(), expected.size()) == 0);
}

void TestWrite(ZmStream& stream, Model& model, const std::string& text)
{
    Demand(stream.Write(text.data(), unsigned(text.size())) == text.size());
    if (!text.empty()) {
        model.Write(text);
    }
}

void TestGetString(ZmFile& file, Model& model, unsigned size)
{
    char buffer[kLongest + 2];
    const size_t end = std::min(model.bytes.find('\n', model.at), model.bytes.size());
    const std::string expected = model.Read(std::min(size_t(size) - 1, end - std::min(model.at, end) + 1));
    Demand(file.GetString(buffer, size) == !expected.empty());
    Demand(expected.empty() || memcmp(buffer, expected.c_str(), expected.size() + 1) == 0);
}

void TestItems(ZmFile& file, Model& model, unsigned size, unsigned count)
{
    char buffer[kLongest];
    const std::string expected = model.Read(size_t(size) * count);
    Demand(file.ReadItems(buffer, size, count) == expected.size() / size);
    Demand(memcmp(buffer, expected.data(), expected.size()) == 0);
}

/// A span and its own position; the file moves with it.
class Span {
public:
    Span(ZmFile& file, Model& model, unsigned base, unsigned size) : m_Model(model), m_Base(base), m_Size(size)
    {
        m_Span.Set(&file, base, size);
        model.Seek(base);
    }

    void Seek(int offset, ZmStream::SeekMode mode)
    {
        const int64_t target = mode == ZmStream::START ? offset
                               : mode == ZmStream::END ? int64_t(m_Size) - offset
                                                       : m_At + offset;
        const int64_t moved = mode == ZmStream::CURRENT ? int64_t(m_Model.at) + offset : m_Base + target;
        if (m_Base + target >= 0) {
            m_At = target;
            Demand(m_Span.Seek(offset, mode) == m_Model.Seek(moved));
        }
    }
    void Read(unsigned size)
    {
        m_Model.Seek(m_Base + m_At);
        const bool whole = m_Model.at + size <= m_Model.bytes.size() && size != 0;
        TestRead(m_Span, m_Model, size);
        m_At += whole ? size : 0;
    }
    void Write(const std::string& text)
    {
        m_Model.Seek(m_Base + m_At);
        TestWrite(m_Span, m_Model, text);
        m_At += int64_t(text.size());
    }
    void Compare()
    {
        Demand(m_Span.Position() == unsigned(m_At) && m_Span.Size() == m_Size);
        Demand(m_Span.IsValid() == (m_Size != 0 && size_t(m_Base + m_Size) <= m_Model.bytes.size()));
    }

private:
    Model& m_Model;
    ZmSubFile m_Span;
    const int64_t m_Base, m_Size;
    int64_t m_At = 0;
};

void TestFile(Input& input, const std::string& path, Model& model)
{
    ZmFile file;
    Demand(file.Open(path.c_str(), ZmFile::READWRITE) == 1);
    const unsigned base = unsigned(input.UpTo(60)), size = unsigned(input.UpTo(60));
    Span span(file, model, base, size);
    for (int step = 0; step < 16 && !input.IsEmpty(); ++step) {
        const int operation = input.UpTo(9), length = input.UpTo(kLongest), offset = length - 20;
        const auto mode = ZmStream::SeekMode(length % 3);
        switch (operation) {
        case 0: Demand(file.Seek(offset, mode) == model.Seek(int64_t(model.Origin(mode)) + offset)); break;
        case 1: TestRead(file, model, unsigned(length)); break;
        case 2: TestWrite(file, model, input.Text(length)); break;
        case 3: TestGetString(file, model, unsigned(length) + 2); break;
        case 4: TestItems(file, model, 1 + unsigned(length) % 7, unsigned(length) / 7); break;
        case 5: span.Seek(offset, mode); break;
        case 6: span.Read(unsigned(length)); break;
        case 7: span.Write(input.Text(length)); break;
        case 8: Demand(file.Flush() == 0 && file.Size() == model.bytes.size()); break;
        case 9:
            Demand(file.Printf("%d", offset) == std::to_string(offset).size());
            model.Write(std::to_string(offset));
            break;
        }
        Demand(file.Position() == model.at);
    }
    Demand(file.Size() == model.bytes.size() && file.IsValid() == 1);
    span.Compare();
    Demand(file.Close() == 1);
}

/// Only reads that begin with a seek: the position after others is too far.
void TestCachedFile(Input& input, const std::string& path, Model& model)
{
    ZmCachedFile file(unsigned(1 + input.UpTo(40)));
    Demand(file.Open(path.c_str(), ZmFile::READONLY) == 1);
    for (int step = 0; step < 10 && !input.IsEmpty(); ++step) {
        char buffer[kLongest];
        const int position = input.UpTo(80), length = input.UpTo(kLongest);
        model.Seek(position);
        file.Seek(position, ZmStream::START);
        const std::string expected = model.Read(size_t(length));
        Demand(file.Read(buffer, unsigned(length)) == unsigned(length));
        Demand(memcmp(buffer, expected.data(), expected.size()) == 0);
        Demand(length % 4 != 0 || file.Size() == model.bytes.size());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const ScratchFolder scratch;
    static const std::string path = scratch / "file";
    Input input(data, size);
    Model model;
    model.bytes = input.Text(input.UpTo(100));
    MakeFile(path, model.bytes);
    TestFile(input, path, model);
    Demand(BytesOf(path) == model.bytes);
    TestCachedFile(input, path, model);
    return 0;
}

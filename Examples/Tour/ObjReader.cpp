#include "ObjReader.h"

#include <cmath>
#include <cstdlib>
#include <istream>

namespace {

// Larger coordinates could overflow when differences are squared.
constexpr float kMaxCoordinate = 1e15f;
// The library counts elements in int.
constexpr uint32_t kMostVertices = INT32_MAX;

class Parser {
public:
    explicit Parser(Mesh& mesh) : m_Mesh(mesh) {}

    bool Line(const std::string& text, size_t number);
    bool Finish();

    std::string error;

private:
    bool Vertices(const char* text);
    bool Face(const char* text);
    bool Corner(const char*& text, uint32_t& index);
    bool Fail(const char* what);

    Mesh& m_Mesh;
    size_t m_Line = 0;
    std::vector<uint32_t> m_Polygon;
    // Faces may precede their vertices, so the largest index is checked at the end.
    uint32_t m_LargestIndex = 0;
    size_t m_LargestIndexLine = 0;
};

bool IsSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

const char* SkipSpace(const char* text)
{
    while (IsSpace(*text)) {
        ++text;
    }
    return text;
}

// Reads one line without its end. A trailing backslash continues it on the next line, except in comments, where it is
// likely to end a path.
bool ReadLine(std::istream& file, std::string& line, size_t& lineCount)
{
    line.clear();
    std::string piece;
    bool any = false, comment = false;
    while (std::getline(file, piece)) {
        ++lineCount;
        if (!piece.empty() && piece.back() == '\r') {
            piece.pop_back();
        }
        if (!any) {
            comment = *SkipSpace(piece.c_str()) == '#';
        }
        any = true;
        line += piece;
        if (comment || line.empty() || line.back() != '\\') {
            break;
        }
        line.back() = ' ';
    }
    return any;
}

// Reads an integer that ends at a space, a slash or the end of the line.
bool ReadInteger(const char*& text, long long& value)
{
    if (IsSpace(*text)) {
        return false;
    }
    char* end = nullptr;
    value = std::strtoll(text, &end, 10);
    if (end == text || (*end != '\0' && *end != '/' && !IsSpace(*end))) {
        return false;
    }
    text = end;
    return true;
}

bool Parser::Fail(const char* what)
{
    error = "line " + std::to_string(m_Line) + ": " + what;
    return false;
}

bool Parser::Line(const std::string& text, size_t number)
{
    m_Line = number;
    const char* start = SkipSpace(text.c_str());
    if (start[0] == 'v' && IsSpace(start[1])) {
        return Vertices(start + 2);
    }
    if (start[0] == 'f' && IsSpace(start[1])) {
        return Face(start + 2);
    }
    return true;
}

bool Parser::Vertices(const char* text)
{
    float coordinate[3];
    for (float& c : coordinate) {
        char* end = nullptr;
        c = std::strtof(text, &end);
        if (end == text || (*end != '\0' && !IsSpace(*end))) {
            return Fail("a vertex needs three numbers");
        }
        if (!(std::fabs(c) <= kMaxCoordinate)) {
            return Fail("a coordinate is too large or not a number");
        }
        text = end;
    }
    if (m_Mesh.vertices.size() >= kMostVertices) {
        return Fail("too many vertices");
    }
    Vertex vertex{};
    vertex.position = ZmVector(coordinate[0], coordinate[1], -coordinate[2]);
    m_Mesh.vertices.push_back(vertex);
    return true;
}

// Parses v, v/vt, v//vn or v/vt/vn. Indices count from 1, or backwards from the last if negative.
bool Parser::Corner(const char*& text, uint32_t& index)
{
    long long position = 0, other = 0;
    if (!ReadInteger(text, position)) {
        return Fail("a face corner is not a number");
    }
    for (int part = 0; part < 2 && *text == '/'; ++part) {
        ++text;
        const bool leftOut = *text == '/' || *text == '\0' || IsSpace(*text);
        if (!leftOut && !ReadInteger(text, other)) {
            return Fail("a face corner is not a number");
        }
    }
    if (*text == '/') {
        return Fail("a face corner has more than three parts");
    }

    if (position < 0) {
        position += (long long)(m_Mesh.vertices.size()) + 1;
    }
    if (position < 1 || position > kMostVertices) {
        return Fail("a face names a vertex that does not exist");
    }
    index = uint32_t(position - 1);
    if (index > m_LargestIndex) {
        m_LargestIndex = index;
        m_LargestIndexLine = m_Line;
    }
    return true;
}

bool Parser::Face(const char* text)
{
    m_Polygon.clear();
    for (text = SkipSpace(text); *text != '\0' && *text != '#'; text = SkipSpace(text)) {
        uint32_t index = 0;
        if (!Corner(text, index)) {
            return false;
        }
        m_Polygon.push_back(index);
    }
    if (m_Polygon.size() < 3) {
        return Fail("a face needs three corners");
    }
    // Mirroring Z has reversed the winding; swapping the order restores it.
    for (size_t i = 2; i < m_Polygon.size(); ++i) {
        m_Mesh.indices.insert(m_Mesh.indices.end(), {m_Polygon[0], m_Polygon[i], m_Polygon[i - 1]});
    }
    return true;
}

bool Parser::Finish()
{
    if (m_Mesh.vertices.empty() || m_Mesh.indices.empty()) {
        error = "it has no vertices or no faces";
        return false;
    }
    m_Line = m_LargestIndexLine;
    return m_LargestIndex < m_Mesh.vertices.size() || Fail("a face names a vertex that does not exist");
}

}  // namespace

bool ReadObj(std::istream& file, Mesh& mesh, std::string& error)
{
    Parser parser(mesh);
    std::string line;
    size_t lineCount = 0;
    bool good = true;
    for (size_t number = 1; good && ReadLine(file, line, lineCount); number = lineCount + 1) {
        good = parser.Line(line, number);
    }
    good = good && parser.Finish();
    error = file.bad() ? "cannot be read to its end" : parser.error;
    return good && !file.bad();
}

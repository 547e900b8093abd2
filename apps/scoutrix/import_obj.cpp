// SPDX-License-Identifier: MIT
// Wavefront OBJ: lines of text, each a keyword and its arguments; a backslash at the end joins the
// next line. Faces refer to vertices by number from 1, or from the last one backwards.
#include "apps/scoutrix/importer.h"

#include "kortools/archive/file.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

namespace scoutrix {
namespace {

constexpr std::size_t maximum_line = 1U << 20; // characters; a longer one is no mesh

// Lines of a file, joined where a backslash ends one, without their ends.
class LineReader {
public:
    explicit LineReader(ImportSource const &source)
        : m_source(source)
        , m_block(64 * 1024)
    {
    }

    unsigned long long GetNumber() const { return m_number; } // of the line last read, from 1

    // False at the end of the file.
    bool Next(std::string &line)
    {
        line.clear();
        bool more = ReadPhysicalLine(line);
        if (!more)
            return false;
        while (!line.empty() && line.back() == '\\') {
            line.back() = ' ';
            if (!ReadPhysicalLine(line))
                break;
        }
        return true;
    }

private:
    bool Fill()
    {
        m_size = m_source.file.Read(m_block.data(), static_cast<unsigned>(m_block.size()));
        m_next = 0;
        m_read += m_size;
        m_source.Update(m_read);
        return m_size > 0;
    }

    // Appends one line; false when there is none left.
    bool ReadPhysicalLine(std::string &line)
    {
        if (m_next == m_size && !Fill())
            return false;
        ++m_number;
        for (;;) {
            char const *const begin = m_block.data() + m_next;
            char const *const end = m_block.data() + m_size;
            char const *const stop = std::find(begin, end, '\n');
            line.append(begin, stop);
            if (line.size() > maximum_line)
                m_source.Fail(L"not a Wavefront OBJ file: a line is too long");
            if (stop != end) {
                m_next = static_cast<std::size_t>(stop + 1 - m_block.data());
                break;
            }
            m_next = m_size;
            if (!Fill())
                break;
        }
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        return true;
    }

    ImportSource const &m_source;
    std::vector<char> m_block;
    std::size_t m_next = 0; // first byte of m_block not yet used
    std::size_t m_size = 0; // bytes of m_block that are filled
    unsigned long long m_read = 0;
    unsigned long long m_number = 0;
};

// Takes the next word off the front of `text`; empty at its end.
std::string_view take_word(std::string_view &text)
{
    std::size_t const begin = std::min(text.find_first_not_of(" \t"), text.size());
    std::size_t const end = std::min(text.find_first_of(" \t", begin), text.size());
    std::string_view const word = text.substr(begin, end - begin);
    text.remove_prefix(end);
    return word;
}

class ObjReader {
public:
    explicit ObjReader(ImportSource const &source)
        : m_source(source)
        , m_lines(source)
    {
    }

    void Read(SceneFile &file)
    {
        std::string line;
        while (m_lines.Next(line))
            ReadLine(line);
        if (m_vertices == 0)
            m_source.Fail(L"not a Wavefront OBJ file: it has no vertices");
        // A face may come before its vertices, so the highest number is tested at the end.
        if (m_highest > m_vertices)
            m_source.Fail(L"the mesh is cut or damaged: a face refers to a missing vertex");
        Store(file.properties);
        file.groups = std::move(m_groups);
    }

private:
    void Store(CCustomData &properties) const
    {
        properties.SetULongInt(propertyVertices, m_vertices);
        properties.SetULongInt(propertyNormals, m_normals);
        properties.SetULongInt(propertyTexture, m_textureCoordinates);
        properties.SetULongInt(propertyFaces, m_faces);
        properties.SetArray(propertyMinimum, m_minimum, 3, sizeof(double));
        properties.SetArray(propertyMaximum, m_maximum, 3, sizeof(double));
    }

    void ReadLine(std::string_view line)
    {
        std::string_view const keyword = take_word(line);
        if (keyword.empty() || keyword[0] == '#')
            return;
        if (keyword == "v")
            ReadVertex(line);
        else if (keyword == "vn")
            ++m_normals;
        else if (keyword == "vt")
            ++m_textureCoordinates;
        else if (keyword == "f")
            ReadFace(line);
        else if (keyword == "g" || keyword == "o")
            ReadGroup(line);
        else if (!IsKeyword(keyword))
            FailAtLine(L"unknown keyword");
    }

    void ReadVertex(std::string_view arguments)
    {
        for (int axis = 0; axis < 3; ++axis) {
            std::string_view const word = take_word(arguments);
            double value = 0;
            auto const [end, error]
                = std::from_chars(word.data(), word.data() + word.size(), value);
            if (error != std::errc() || end != word.data() + word.size() || !std::isfinite(value))
                FailAtLine(L"a vertex needs three numbers");
            bool const first = m_vertices == 0;
            double &low = m_minimum[axis];
            double &high = m_maximum[axis];
            low = first ? value : std::min(low, value);
            high = first ? value : std::max(high, value);
        }
        ++m_vertices;
    }

    void ReadFace(std::string_view arguments)
    {
        int corners = 0;
        for (auto word = take_word(arguments); !word.empty(); word = take_word(arguments)) {
            std::string_view const number = word.substr(0, word.find('/'));
            long long index = 0;
            auto const [end, error]
                = std::from_chars(number.data(), number.data() + number.size(), index);
            if (error != std::errc() || end != number.data() + number.size() || index == 0)
                FailAtLine(L"a face needs vertex numbers");
            auto const vertices = static_cast<long long>(m_vertices);
            if (index < -vertices)
                FailAtLine(L"a face refers to a missing vertex");
            m_highest = std::max(m_highest, static_cast<unsigned long long>(std::max(index, 0LL)));
            ++corners;
        }
        if (corners < 3)
            FailAtLine(L"a face needs three corners");
        ++m_faces;
        if (m_group != no_group)
            ++m_groups[m_group].faces;
    }

    void ReadGroup(std::string_view arguments)
    {
        Text const name = kor_apps::from_utf8(std::string(take_word(arguments)));
        auto const known = std::find_if(m_groups.begin(), m_groups.end(),
            [&](SceneGroup const &group) { return group.name == name; });
        m_group = static_cast<std::size_t>(known - m_groups.begin());
        if (known != m_groups.end())
            return;
        if (name.IsEmpty() || m_groups.size() == maximum_groups)
            m_group = no_group;
        else
            m_groups.push_back({ name });
    }

    static bool IsKeyword(std::string_view word)
    {
        static constexpr std::string_view keywords[] = { "usemtl", "mtllib", "s", "l", "p", "vp",
            "deg", "bmat", "step", "cstype", "curv", "curv2", "surf", "parm", "trim", "hole",
            "scrv", "sp", "end", "con", "mg", "bevel", "c_interp", "d_interp", "lod", "shadow_obj",
            "trace_obj", "ctech", "stech", "maplib", "usemap", "call", "csh" };
        return std::find(std::begin(keywords), std::end(keywords), word) != std::end(keywords);
    }

    [[noreturn]] void FailAtLine(wchar_t const *reason) const
    {
        Text text;
        text.Format(L"line %I64u: %s", m_lines.GetNumber(), reason);
        m_source.Fail(text);
    }

    static constexpr std::size_t maximum_groups = 1000; // kept; the search is linear
    static constexpr std::size_t no_group = static_cast<std::size_t>(-1);

    ImportSource const &m_source;
    LineReader m_lines;
    unsigned long long m_vertices = 0;
    unsigned long long m_normals = 0;
    unsigned long long m_textureCoordinates = 0;
    unsigned long long m_faces = 0;
    unsigned long long m_highest = 0;  // vertex number that a face refers to
    double m_minimum[3] = { 0, 0, 0 }; // bounding box of the vertices
    double m_maximum[3] = { 0, 0, 0 };
    std::vector<SceneGroup> m_groups; // in order of appearance
    std::size_t m_group = no_group;   // that faces belong to now
};

} // namespace

void import_obj(ImportSource const &source, SceneFile &file)
{
    ObjReader(source).Read(file);
}

} // namespace scoutrix

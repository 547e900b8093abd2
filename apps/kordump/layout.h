// SPDX-License-Identifier: MIT
// Layouts: what the objects of a class write into an archive, field by field. An archive does not
// say this itself, so kordump reads it from a text like
//
//   class CPoint 1          # name and schema number
//       x      f64
//       label  string
//   class CPath 2 : CPoint  # its base writes first; ": CPoint 1" names the base's schema, too
//       parent object       # a reference to any object
//       points object[]     # a count, then the elements
//
// Types: bool i8 u8 i16 u16 i32 u32 i64 u64 f32 f64 wchar time (an i64: seconds since 1970) count
// string object custom_data tree, each also with []; and node_data, the block of custom data that
// a tree's node has when the first value of its object, the node's version, is 2.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kordump {

enum class FieldType {
    Bool,
    I8,
    U8,
    I16,
    U16,
    I32,
    U32,
    I64,
    U64,
    F32,
    F64,
    WideChar,
    Time,
    Count,
    String,
    Object,
    CustomData,
    NodeData,
    Tree
};

// Bytes of a plain value; 0 for the types whose size varies.
unsigned int get_plain_size(FieldType type);
std::string_view get_type_name(FieldType type);

struct Field {
    std::string name;
    FieldType type;
    bool array;
};

struct Layout {
    std::string name; // UTF-8, as those of the fields, which are unique
    unsigned int schema = 0;
    std::vector<Field> fields; // those of the base first

    void Add(Field field); // another field of this name gets another name
};

class LayoutTable {
public:
    // Adds the layouts of a text. Throws std::runtime_error with the line number for a bad one.
    // A class given again replaces the one before. A base without a schema is the latest one.
    void Parse(std::string_view text);

    // Null when the class is not known with this schema.
    Layout const *Find(std::string const &name, unsigned int schema) const;

    // The fields of "u32 string object[]", for what lies in an archive outside any object.
    static std::vector<Field> ParseFields(std::string_view text);

private:
    Layout &ParseClass(std::vector<std::string> const &words);

    std::map<std::pair<std::string, unsigned int>, Layout> m_layouts;
};

// "folders object[]", which ParseFields() and a layout's text take.
std::string print_field(Field const &field);

// The classes that the library and scoutrix write.
extern std::string_view const known_layouts;

} // namespace kordump

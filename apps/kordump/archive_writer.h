// SPDX-License-Identifier: MIT
// The items of an archive from the JSON of their report.
//
// The indices in the JSON are names: a class or object is new where its index appears first, and
// what refers to it says the same index. The indices in the archive are counted anew, so objects
// can be put in and taken out without changing those of the others. New objects need none.
#pragma once

#include "apps/kordump/byte_buffer.h"
#include "apps/kordump/layout.h"

#include <map>
#include <nlohmann/json_fwd.hpp>

namespace kordump {

using Json = nlohmann::json;

class ArchiveWriter {
public:
    ArchiveWriter(ByteBuffer &bytes, LayoutTable const &layouts)
        : m_bytes(bytes)
        , m_layouts(layouts)
    {
    }

    // All throw std::runtime_error, or what the JSON library throws, with the names of the fields
    // around the mistake.
    void WriteField(Field const &field, Json const &value);
    void WriteClass(Json const &object);
    void WriteFields(Json const &object); // of its class

private:
    using ClassKey = std::pair<std::string, unsigned int>; // name and schema

    void WriteOne(FieldType type, Json const &value);
    void WriteArray(Field const &field, Json const &value);
    void WriteArrayCount(std::size_t there, Json const &value);
    void WriteByteArray(Json const &value);
    void WriteString(Json const &value);
    void WriteObject(Json const &value);
    void EnterObject(Json const &value);
    Layout const &GetLayout(Json const &object) const;
    void WriteReference(Json const &value);
    void WriteNewClass(ClassKey const &key);
    void WriteIndex(unsigned long long index, unsigned int class_bit, Json const &value);
    void WriteWidened(unsigned long long number, unsigned int first_size, unsigned int form_size);
    void WriteCount(unsigned long long count, Json const *form);
    static ClassKey GetClassKey(Json const &object);

    ByteBuffer &m_bytes;
    LayoutTable const &m_layouts;
    struct Class {
        ClassKey key;
        unsigned long long index;
    };
    std::map<unsigned long long, Class> m_classes; // by the index in the JSON
    std::map<ClassKey, unsigned long long> m_latest_classes;
    std::map<unsigned long long, unsigned long long> m_objects; // by the index in the JSON
    unsigned long long m_next = 1;                              // index of a new class or object
};

} // namespace kordump

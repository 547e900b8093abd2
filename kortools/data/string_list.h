// SPDX-License-Identifier: MIT
// CStringList: a list of wide strings, whose positions stay valid while others come and go. For
// access by index use CXArray<CXTString<wchar_t>>. Used by one thread at a time.
//
//   CStringList names;
//   names.AddTail(L"first");
//   for (CStringList::Position at = names.GetHeadPosition(); at;)
//       show(names.GetNext(at));
//   for (CXTString<wchar_t> const &name : names) // the same
//       show(name);
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

#include <cstddef>
#include <iterator>

class KORTOOLS_API CStringList {
    struct Node;

public:
    using String = CXTString<wchar_t>;
    using Position = Node *; // null is behind the tail and before the head

    CStringList() = default;
    CStringList(CStringList const &other);
    CStringList(CStringList &&other) noexcept; // leaves an empty list
    CStringList &operator=(CStringList other) noexcept;
    ~CStringList();

    // Return the new string's position.
    Position AddHead(String const &text) { return Insert(text, m_head); }
    Position AddTail(String const &text) { return Insert(text, nullptr); }
    void AddTail(CStringList const &other); // copies of all strings; `other` may be this list

    // Null: at the end.
    Position InsertBefore(Position position, String const &text) { return Insert(text, position); }

    // Only with a string of this list; its position is then no longer valid.
    void RemoveAt(Position position);

    // The string, taken out; empty when there is none.
    String RemoveHead();
    String RemoveTail();
    void RemoveAll();

    int GetCount() const { return m_count; }
    int GetSize() const { return m_count; }
    bool IsEmpty() const { return m_count == 0; }

    Position GetHeadPosition() const { return m_head; }
    Position GetTailPosition() const { return m_tail; }

    // The string at a position of this list; the position goes to the next or previous one.
    String &GetNext(Position &position);
    String const &GetNext(Position &position) const;
    String const &GetPrev(Position &position) const;
    String &GetAt(Position position);
    String const &GetAt(Position position) const;

    // The position of the first equal string behind `after` (null: of the whole list), or null.
    Position Find(String const &text, Position after = nullptr) const;

    bool operator==(CStringList const &other) const;

    // Forward, over the strings.
    class Iterator {
    public:
        using value_type = String;
        using difference_type = std::ptrdiff_t;

        Iterator() = default;
        explicit Iterator(Node *at)
            : m_at(at)
        {
        }
        String const &operator*() const { return m_at->text; }
        String const *operator->() const { return &m_at->text; }
        Iterator &operator++()
        {
            m_at = m_at->next;
            return *this;
        }
        Iterator operator++(int)
        {
            Iterator const before = *this;
            ++*this;
            return before;
        }
        bool operator==(Iterator const &) const = default;

    private:
        Node *m_at = nullptr;
    };
    Iterator begin() const { return Iterator(m_head); }
    Iterator end() const { return {}; }

private:
    struct Node {
        String text;
        Node *previous;
        Node *next;
    };

    Position Insert(String const &text, Node *next);

    Node *m_head = nullptr;
    Node *m_tail = nullptr;
    int m_count = 0;
};

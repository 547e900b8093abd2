// SPDX-License-Identifier: MIT
#include "kortools/data/string_list.h"

#include <algorithm>
#include <utility>

CStringList::CStringList(CStringList const &other)
{
    AddTail(other);
}

CStringList::CStringList(CStringList &&other) noexcept
    : m_head(std::exchange(other.m_head, nullptr))
    , m_tail(std::exchange(other.m_tail, nullptr))
    , m_count(std::exchange(other.m_count, 0))
{
}

CStringList &CStringList::operator=(CStringList other) noexcept
{
    std::swap(m_head, other.m_head);
    std::swap(m_tail, other.m_tail);
    std::swap(m_count, other.m_count);
    return *this;
}

CStringList::~CStringList()
{
    RemoveAll();
}

CStringList::Position CStringList::Insert(String const &text, Node *next)
{
    Node *const previous = next ? next->previous : m_tail;
    Node *const node = new Node { text, previous, next };
    (previous ? previous->next : m_head) = node;
    (next ? next->previous : m_tail) = node;
    ++m_count;
    return node;
}

void CStringList::AddTail(CStringList const &other)
{
    Node *at = other.m_head;
    for (int rest = other.m_count; rest > 0; --rest, at = at->next)
        AddTail(at->text);
}

void CStringList::RemoveAt(Position position)
{
    if (!position)
        return;
    (position->previous ? position->previous->next : m_head) = position->next;
    (position->next ? position->next->previous : m_tail) = position->previous;
    --m_count;
    delete position;
}

CStringList::String CStringList::RemoveHead()
{
    String text = m_head ? std::move(m_head->text) : String();
    RemoveAt(m_head);
    return text;
}

CStringList::String CStringList::RemoveTail()
{
    String text = m_tail ? std::move(m_tail->text) : String();
    RemoveAt(m_tail);
    return text;
}

void CStringList::RemoveAll()
{
    for (Node *node = std::exchange(m_head, nullptr); node;)
        delete std::exchange(node, node->next);
    m_tail = nullptr;
    m_count = 0;
}

CStringList::String &CStringList::GetNext(Position &position)
{
    return std::exchange(position, position->next)->text;
}

CStringList::String const &CStringList::GetNext(Position &position) const
{
    return std::exchange(position, position->next)->text;
}

CStringList::String const &CStringList::GetPrev(Position &position) const
{
    return std::exchange(position, position->previous)->text;
}

CStringList::String &CStringList::GetAt(Position position)
{
    return position->text;
}

CStringList::String const &CStringList::GetAt(Position position) const
{
    return position->text;
}

CStringList::Position CStringList::Find(String const &text, Position after) const
{
    Node *at = after ? after->next : m_head;
    while (at && !(at->text == text))
        at = at->next;
    return at;
}

bool CStringList::operator==(CStringList const &other) const
{
    return m_count == other.m_count && std::equal(begin(), end(), other.begin());
}

// SPDX-License-Identifier: MIT
// Replace and Remove.
//
// Both are described as a loop of finding, removing and inserting, which moves the tail of the text
// each time. The search never looks back behind the place of the last edit, so it sees the
// original text only. Hence two steps with the same result in linear time: find all places in the
// original text, then move each stretch between two of them once.
#include "kortools/core/throw.h"
#include "kortools/core/xstring.h"

#include <algorithm>
#include <cstdlib>
#include <functional>

namespace {

// Where the matches begin, ascending. The first few hundred need no allocation.
class Places {
public:
    Places() = default;
    Places(Places const &) = delete;
    Places &operator=(Places const &) = delete;
    ~Places() { std::free(m_block); }

    void Add(int place)
    {
        if (m_count == m_capacity)
            Grow();
        m_places[m_count++] = place;
    }
    long long GetCount() const { return m_count; }
    int operator[](long long index) const { return m_places[index]; }

private:
    void Grow()
    {
        m_capacity *= 2;
        bool const first = !m_block;
        void *const block
            = std::realloc(m_block, static_cast<std::size_t>(m_capacity) * sizeof(int));
        if (!block)
            kortools::core::throw_out_of_memory();
        m_block = static_cast<int *>(block);
        if (first)
            std::copy_n(m_inline, m_count, m_block);
        m_places = m_block;
    }

    static constexpr long long inline_capacity = 256;
    int m_inline[inline_capacity];
    int *m_block = nullptr; // the places once there are more
    int *m_places = m_inline;
    long long m_count = 0;
    long long m_capacity = inline_capacity;
};

// Puts `replacement` in place of the `old_length` characters at each of the places (at least one).
template <class T> class Rewrite {
public:
    Rewrite(CXTCharArray<T> &text, Places const &places, long long old_length,
        std::basic_string_view<T> replacement)
        : m_text(text)
        , m_places(places)
        , m_old_length(old_length)
        , m_replacement(replacement)
    {
    }

    void Run()
    {
        long long const length = m_text.GetLength();
        long long const growth = static_cast<long long>(m_replacement.size()) - m_old_length;
        long long const new_length = length + growth * m_places.GetCount();
        if (growth > 0) {
            m_text.SetLength(new_length);
            FillBackward(length, new_length);
        } else {
            FillForward(length);
            m_text.SetLength(new_length);
        }
    }

private:
    void FillForward(long long length)
    {
        long long const count = m_places.GetCount();
        long long write = m_places[0];
        for (long long i = 0; i < count; ++i) {
            write = Put(write);
            long long const read = m_places[i] + m_old_length;
            long long const stretch = (i + 1 < count ? m_places[i + 1] : length) - read;
            Move(write, read, stretch);
            write += stretch;
        }
    }

    void FillBackward(long long length, long long new_length)
    {
        long long read_end = length;
        long long write = new_length;
        for (long long i = m_places.GetCount(); i-- > 0;) {
            long long const read = m_places[i] + m_old_length;
            write -= read_end - read;
            Move(write, read, read_end - read);
            write -= static_cast<long long>(m_replacement.size());
            Put(write);
            read_end = m_places[i];
        }
    }

    void Move(long long target, long long source, long long length)
    {
        if (target != source)
            std::char_traits<T>::move(
                &m_text[target], &m_text[source], static_cast<std::size_t>(length));
    }

    // Returns the position behind the replacement.
    long long Put(long long target)
    {
        std::char_traits<T>::copy(
            m_text.GetData() + target, m_replacement.data(), m_replacement.size());
        return target + static_cast<long long>(m_replacement.size());
    }

    CXTCharArray<T> &m_text;
    Places const &m_places;
    long long m_old_length;
    std::basic_string_view<T> m_replacement;
};

} // namespace

template <class T>
int CXTString<T>::Replace(T const *old, T const *replacement, int count, int limit)
{
    if (!old || !replacement || count == 0 || limit == 0)
        return 0;
    std::less<> const before;
    if (!before(replacement, begin()) && before(replacement, begin() + GetCapacity()))
        return Replace(old, CXTString(replacement).GetConstBuffer(), count, limit);

    long long const old_length = static_cast<long long>(View(old).size());
    long long const growth = static_cast<long long>(View(replacement).size()) - old_length;
    Places places;
    int place = 0;
    while ((place = FindInternal(old, place, false)) >= 0) {
        // The limit is a position in the edited text.
        if (place + places.GetCount() * growth >= limit)
            break;
        places.Add(place);
        if (places.GetCount() == count)
            break;
        place += static_cast<int>(old_length);
    }
    if (places.GetCount() > 0)
        Rewrite<T>(m_text, places, old_length, replacement).Run();
    return static_cast<int>(places.GetCount());
}

template <class T> int CXTString<T>::Replace(T old, T replacement, int count, int limit)
{
    int replaced = 0;
    int place = 0;
    while (replaced != count && (place = Find(old, place)) >= 0 && place < limit) {
        m_text[place++] = replacement;
        ++replaced;
    }
    return replaced;
}

template <class T> int CXTString<T>::Remove(T const *text, bool noCase, int count)
{
    if (!text || count == 0)
        return 0;
    Places places;
    int place = 0;
    while ((place = Find(text, place, noCase)) >= 0) {
        places.Add(place);
        if (places.GetCount() == count)
            break;
        place += static_cast<int>(View(text).size());
    }
    if (places.GetCount() > 0)
        Rewrite<T>(m_text, places, static_cast<long long>(View(text).size()), View()).Run();
    return static_cast<int>(places.GetCount());
}

template <class T> int CXTString<T>::Remove(T ch, int count)
{
    int removed = 0;
    auto const unwanted = [&](T each) {
        bool const remove = each == ch && removed != count;
        removed += remove;
        return remove;
    };
    T *const kept_end = std::remove_if(m_text.begin(), m_text.end(), unwanted);
    m_text.SetLength(kept_end - m_text.begin());
    return removed;
}

template class CXTString<char>;
template class CXTString<wchar_t>;

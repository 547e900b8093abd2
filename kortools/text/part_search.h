// SPDX-License-Identifier: MIT
// The search for the parts of a pattern with wildcards.
//
// Behind the first '*' a pattern is a row of parts with stars between them. The first place for
// each part, behind the part before it, leaves the most for those that follow; only the last part
// must end where the name ends. So one search for each part decides.
//
// A part is sought by comparing it at each place where its last letter stands. When that has taken
// long, as "aaba" does in "aaaa...", the rest is searched by
//
// - Knuth, Morris and Pratt's algorithm, when the part has no '?';
// - else 64 characters of it at a time, with a bit for each beginning of them that ends at the
//   current character of the name; a place counts when all of the part's pieces are found.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kortools::text {

template <class Char> class PartSearch {
public:
    using View = std::basic_string_view<Char>;

    static constexpr std::size_t none = View::npos;

    PartSearch(View text, View part)
        : m_text(text)
        , m_part(part)
    {
    }

    // Where the part first stands in the text, or none.
    std::size_t find() const
    {
        if (m_part.size() > m_text.size())
            return none;
        std::size_t const letter = m_part.find_last_not_of(Char('?'));
        return letter == none ? 0 : find_by_letter(letter);
    }

    static bool stands_at(View text, View part) { return count_same(text, part) == part.size(); }

private:
    using Places = std::vector<std::uint32_t>;

    static std::size_t count_same(View text, View part)
    {
        std::size_t i = 0;
        while (i < part.size() && (part[i] == Char('?') || part[i] == text[i]))
            ++i;
        return i;
    }

    std::size_t last_place() const { return m_text.size() - m_part.size(); }

    // `letter` is the position of the part's last one.
    std::size_t find_by_letter(std::size_t letter) const
    {
        std::size_t budget = 4 * m_text.size() + 64; // comparisons
        for (std::size_t at = 0; at <= last_place(); ++at) {
            at = m_text.find(m_part[letter], at + letter);
            if (at == none || at - letter > last_place())
                return none;
            at -= letter;
            std::size_t const same = count_same(m_text.substr(at), m_part);
            if (same == m_part.size())
                return at;
            if (same > budget)
                return find_in_linear_time(at + 1);
            budget -= same;
        }
        return none;
    }

    std::size_t find_in_linear_time(std::size_t start) const
    {
        PartSearch const rest(m_text.substr(start), m_part);
        if (rest.m_part.size() > rest.m_text.size())
            return none;
        std::size_t const found
            = m_part.find(Char('?')) == none ? rest.find_letters() : rest.find_pieces();
        return found == none ? none : start + found;
    }

    std::size_t find_letters() const
    {
        // borders[i]: the longest proper beginning of the part that ends at its character i.
        std::vector<std::size_t> borders(m_part.size());
        std::size_t length = 0;
        auto const advance = [&](Char ch) {
            while (length > 0 && m_part[length] != ch)
                length = borders[length - 1];
            length += m_part[length] == ch;
        };
        for (std::size_t i = 1; i < m_part.size(); ++i) {
            advance(m_part[i]);
            borders[i] = length;
        }
        length = 0;
        for (std::size_t i = 0; i < m_text.size(); ++i) {
            advance(m_text[i]);
            if (length == m_part.size())
                return i + 1 - length;
        }
        return none;
    }

    static constexpr std::size_t piece_length = 64;

    std::size_t find_pieces() const
    {
        std::size_t const count = (m_part.size() + piece_length - 1) / piece_length;
        Places found(last_place() + 1);
        for (std::size_t piece = 0; piece < count; ++piece)
            count_places(piece * piece_length, found);
        auto const place = std::find(found.begin(), found.end(), count);
        return place == found.end() ? none : static_cast<std::size_t>(place - found.begin());
    }

    // Adds 1 to each place of the part at which its piece from `offset` on fits.
    void count_places(std::size_t offset, Places &found) const
    {
        View const piece = m_part.substr(offset, piece_length);
        PieceMasks const masks(piece);
        std::uint64_t const whole = std::uint64_t(1) << (piece.size() - 1);
        std::uint64_t beginnings = 0;
        View const text = m_text.substr(offset, last_place() + piece.size());
        for (std::size_t i = 0; i < text.size(); ++i) {
            beginnings = (beginnings << 1 | 1) & masks.get(text[i]);
            if (beginnings & whole)
                ++found[i + 1 - piece.size()];
        }
    }

    // Which positions of a piece take a character, a bit for each.
    class PieceMasks {
    public:
        explicit PieceMasks(View piece)
        {
            for (std::size_t i = 0; i < piece.size(); ++i) {
                if (piece[i] == Char('?'))
                    m_any |= std::uint64_t(1) << i;
                else
                    slot_of(piece[i]) = { piece[i], true, 0 };
            }
            for (std::size_t i = 0; i < piece.size(); ++i) {
                if (piece[i] != Char('?'))
                    slot_of(piece[i]).positions |= std::uint64_t(1) << i;
            }
        }
        std::uint64_t get(Char ch) const
        {
            return m_any | const_cast<PieceMasks *>(this)->slot_of(ch).positions;
        }

    private:
        struct Slot {
            Char ch = 0;
            bool is_used = false;
            std::uint64_t positions = 0;
        };

        // The slot of a character, or the free one that ends the search for it.
        Slot &slot_of(Char ch)
        {
            std::size_t at = (static_cast<std::uint32_t>(ch) * 0x9E3779B1U) >> 25;
            while (m_slots[at].is_used && m_slots[at].ch != ch)
                at = (at + 1) % m_slots.size();
            return m_slots[at];
        }

        std::array<Slot, 2 * piece_length> m_slots;
        std::uint64_t m_any = 0;
    };

    View m_text;
    View m_part;
};

} // namespace kortools::text

// SPDX-License-Identifier: MIT
#include "apps/kordump/json_source.h"

#include <nlohmann/json.hpp>
#include <vector>

namespace kordump {
namespace {

constexpr char const *items_key = "items";
constexpr std::size_t items_level = 2; // structures open in the list of items

// Builds the values that the parser finds; items are handed over and forgotten.
class Builder : public nlohmann::json_sax<Json> {
public:
    // `visit` null: items are not built.
    explicit Builder(std::function<void(Json const &)> const *visit)
        : m_visit(visit)
    {
    }

    Json TakeHead() { return std::move(m_head); }

    bool null() override { return Add(nullptr); }
    bool boolean(bool value) override { return Add(value); }
    bool number_integer(number_integer_t value) override { return Add(value); }
    bool number_unsigned(number_unsigned_t value) override { return Add(value); }
    bool number_float(number_float_t value, string_t const &) override { return Add(value); }
    bool string(string_t &value) override { return Add(std::move(value)); }
    bool binary(binary_t &) override { return false; }
    bool start_object(std::size_t) override { return Open(Json::object()); }
    bool start_array(std::size_t) override { return Open(Json::array()); }
    bool end_object() override { return Close(); }
    bool end_array() override { return Close(); }
    bool key(string_t &value) override
    {
        m_key = std::move(value);
        return true;
    }
    bool parse_error(std::size_t, std::string const &, Json::exception const &error) override
    {
        throw std::runtime_error(error.what());
    }

private:
    bool IsSkipping() const { return m_in_items && m_visit == nullptr; }
    bool IsItem() const { return m_in_items && m_open.size() == items_level; }

    // The place of a value in what is built.
    Json *Place(Json &&value)
    {
        if (IsItem() || m_open.empty())
            return &((IsItem() ? m_item : m_head) = std::move(value));
        Json &parent = *m_open.back();
        if (parent.is_array()) {
            parent.push_back(std::move(value));
            return &parent.back();
        }
        return &(parent[m_key] = std::move(value));
    }

    bool Add(Json &&value)
    {
        if (IsSkipping())
            return true;
        Place(std::move(value));
        Deliver();
        return true;
    }

    bool Open(Json &&value)
    {
        if (m_open.size() >= maximum_json_depth)
            throw std::runtime_error("the JSON is nested too deep");
        bool const is_list = m_open.size() == 1 && m_key == items_key && value.is_array();
        m_open.push_back(IsSkipping() ? nullptr : Place(std::move(value)));
        m_in_items = m_in_items || is_list;
        return true;
    }

    bool Close()
    {
        m_open.pop_back();
        if (m_open.size() < items_level)
            m_in_items = false;
        Deliver();
        return true;
    }

    void Deliver()
    {
        if (IsItem() && m_visit != nullptr)
            (*m_visit)(m_item);
    }

    std::function<void(Json const &)> const *m_visit;
    Json m_head;
    Json m_item;
    std::vector<Json *> m_open;
    std::string m_key;
    bool m_in_items = false;
};

Json parse(std::string_view text, std::function<void(Json const &)> const *visit)
{
    Builder builder(visit);
    Json::sax_parse(text, &builder);
    return builder.TakeHead();
}

} // namespace

Json read_json_head(std::string_view text)
{
    return parse(text, nullptr);
}

void for_each_item(std::string_view text, std::function<void(Json const &)> const &visit)
{
    parse(text, &visit);
}

} // namespace kordump

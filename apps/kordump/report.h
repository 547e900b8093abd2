// SPDX-License-Identifier: MIT
// What a reader tells of a file, in the order of its bytes: structures and values. One report makes
// lines for people of it, one JSON.
//
// A line is for people, a key and a JSON value for scripts; what is said quietly, or with a line
// that has neither name nor text nor value, makes no line. The key is empty in arrays.
#pragma once

#include <string>
#include <string_view>

namespace kordump {

struct Line {
    unsigned long long offset = 0; // bytes from the beginning of the file
    std::string name;              // of a field; empty outside objects
    std::string text;              // what it is
    std::string value;             // empty: the JSON value is shown
    unsigned int indent = 0;       // levels beyond those of the open structures
};

enum class Bracket : char { Object = '{', Array = '[' };

class Report {
public:
    Report() = default;
    Report(Report const &) = delete;
    Report &operator=(Report const &) = delete;
    virtual ~Report() = default;

    // False when the texts of lines would be made for nothing.
    virtual bool WantsLines() const = 0;

    // A structure; everything is in it until it is closed.
    virtual void Open(Line const &line, std::string_view key, Bracket bracket) = 0;
    virtual void OpenQuietly(std::string_view key, Bracket bracket) = 0;
    virtual void Close() = 0;

    virtual void Put(Line const &line, std::string_view key, std::string_view json) = 0;
    virtual void PutQuietly(std::string_view key, std::string_view json) = 0;

    // How many structures are open.
    virtual int GetDepth() const = 0;

    void CloseDownTo(int depth)
    {
        while (GetDepth() > depth)
            Close();
    }
    void PutNumber(std::string_view key, unsigned long long number)
    {
        PutQuietly(key, std::to_string(number));
    }
};

// For the first reading, which only looks for what cannot be understood.
class NoReport : public Report {
public:
    bool WantsLines() const override { return false; }
    void Open(Line const &, std::string_view, Bracket) override { }
    void OpenQuietly(std::string_view, Bracket) override { }
    void Close() override { }
    void Put(Line const &, std::string_view, std::string_view) override { }
    void PutQuietly(std::string_view, std::string_view) override { }
    int GetDepth() const override { return 0; }
};

} // namespace kordump

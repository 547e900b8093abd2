// SPDX-License-Identifier: MIT
// What is in the files of samples/ that the library wrote: the settings of a program, an outline,
// and a scene. Never change it: files of earlier builds have it. New content gets new files.
#pragma once

#include "apps/scene/scene.h"
#include "kortools/data/custom_data.h"
#include "kortools/data/tree.h"

#include <string>

// A chapter of an outline.
class CSampleChapter : public CTreeNode {
    KOR_DECLARE_CLASS(CSampleChapter)
public:
    CSampleChapter() = default;
    CSampleChapter(wchar_t const *title, int pages)
        : m_title(title)
        , m_pages(pages)
    {
    }

    void Serialize(CXArchive &archive) override;
    CXTString<wchar_t> GetDisplayName() const override { return m_title; }
    CTreeNode *CopyFrom(unsigned int options) const override;
    bool operator==(CTreeNode const &other) const override;

private:
    CXTString<wchar_t> m_title;
    int m_pages = 0;
};

namespace kor_test {

constexpr unsigned int settings_id = 0x53455454; // "SETT"
constexpr unsigned int window_id = 0x57494E44;   // "WIND"

void fill_settings(CCustomData &settings);
void fill_window(CCustomData &window); // one value of most kinds, nested ones too
void fill_outline(CTree &outline);
void fill_scene(CScene &scene);

// The bytes of each file but the scene, whose classes may come to write more.
std::string make_settings_stream();
std::string make_preferences(std::wstring const &scratch_file);
std::string make_outline();

} // namespace kor_test

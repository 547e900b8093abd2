// SPDX-License-Identifier: MIT
// Loads trees from arbitrary bytes. Bit 0 of the first byte chooses a file without a window of its
// own; the rest is the archive.
//
// Nothing may crash, leak or take memory out of proportion; a tree that cannot be loaded is empty,
// and one that can is the same again after it is written and read once more.
#include "kortools/archive/exception.h"
#include "kortools/archive/mem_file.h"
#include "kortools/data/tree.h"

#include <cstdint>
#include <cstdlib>
#include <string>

class FuzzTreeNode : public CTreeNode {
    KOR_DECLARE_CLASS(FuzzTreeNode)
public:
    FuzzTreeNode() { ++s_alive; }
    FuzzTreeNode(FuzzTreeNode const &other)
        : CTreeNode(other)
        , m_text(other.m_text)
    {
        ++s_alive;
    }
    FuzzTreeNode &operator=(FuzzTreeNode const &) = delete;
    ~FuzzTreeNode() override { --s_alive; }

    void Serialize(CXArchive &archive) override
    {
        CTreeNode::Serialize(archive);
        archive.IsStoring() ? archive << m_text : archive >> m_text;
    }
    CTreeNode *CopyFrom(unsigned int) const override { return new FuzzTreeNode(*this); }

    static inline int s_alive = 0;

private:
    CXTString<wchar_t> m_text;
};
KOR_IMPLEMENT_CLASS(FuzzTreeNode, CTreeNode, 2 | CXRuntimeClass::versionable_schema)

namespace {

class StepFile : public CXMemFile {
public:
    using CXMemFile::CXMemFile;
    unsigned long long BufferCommand(
        BufferCommandType, unsigned long long, void **, void **) override
    {
        return 0;
    }
};

void require(bool condition)
{
    if (!condition)
        std::abort();
}

std::string store(CTree &tree)
{
    CXMemFile file;
    CXArchive archive(&file, CXArchive::store);
    tree.Serialize(archive);
    archive.Close();
    return { reinterpret_cast<char const *>(file.GetBuffer()),
        static_cast<std::size_t>(file.GetLength()) };
}

void check(CTree &tree)
{
    std::string const once = store(tree);
    CXMemFile file(reinterpret_cast<unsigned char const *>(once.data()), once.size());
    CXArchive archive(&file, CXArchive::load, 200);
    CTree again;
    again.Serialize(archive);
    require(archive.GetBytesLeft() == 0);
    require(again.GetChildNbr(nullptr, false) == tree.GetChildNbr(nullptr, false));
    again.Sort(
        nullptr, [](void *, void const *, void const *) { return 0; }, nullptr, true);
    CTree copy;
    require(copy.CopyChilds(nullptr, again.GetRoot()));
    require(store(copy) == once);
}

void load(CXFile &file)
{
    CXArchive archive(&file, CXArchive::load, CXArchive::minimum_buffer_size);
    CTree tree;
    tree.SetSilent(true);
    try {
        tree.Serialize(archive);
    } catch (CXException *exception) {
        exception->Delete();
        require(tree.IsEmpty() && FuzzTreeNode::s_alive == 0);
        return;
    }
    check(tree);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size)
{
    if (size < 2)
        return 0;
    if (data[0] & 1) {
        StepFile file(data + 1, size - 1);
        load(file);
    } else {
        CXMemFile file(data + 1, size - 1);
        load(file);
    }
    require(FuzzTreeNode::s_alive == 0);
    return 0;
}

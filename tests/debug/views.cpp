// SPDX-License-Identifier: MIT
// Stops with objects of all kinds at hand; debugger_views_test.py prints them in GDB. A comment
//: expression => text
// says what GDB shows then.
#include "kortools/data/custom_data_entry.h"
#include "kortools/kortools.h"

#include <cstring>
#include <new>

namespace {

class CLayer : public CTreeNode {
public:
    explicit CLayer(int number)
        : m_number(number)
    {
    }
    int m_number;
};

// Objects of nonsense, never destroyed: all bytes are 0xA5, and pointers point to no memory.
template <class T> union Damaged {
    Damaged() { std::memset(static_cast<void *>(this), 0xA5, sizeof *this); }
    ~Damaged() { }
    T object;
};

template <class... T> [[gnu::noinline]] void stop_here(T const &...) { }

// clang-format off
void texts()
{
    CXTString<char> const empty; //: empty => ""
    CXTString<char> const narrow("a \"b\"\n"); //: narrow => "a \"b\"\n"
    CXTString<wchar_t> const wide(L"caf\u00E9 \U0001F600"); //: wide => L"café 😀"
    CXTString<wchar_t> const zeros(L"a\0b", 3); //: zeros => L"a\0b"
    CXTString<char> const endless('x', 1000); //: endless => "xxxxxxxx"...
    CXTString<wchar_t> const &reference = wide; //: reference => L"café 😀"
    CXTCharArray<wchar_t> const characters(L"abc", 3); //: characters => L"abc"
    CXTString<wchar_t> detached(L"x"); //: detached => no block
    std::free(detached.DetachBuffer());
    Damaged<CXTString<wchar_t>> wild; //: wild.object => damaged: length -6510615555426900571 of -6510615555426900571
    stop_here(empty, narrow, wide, zeros, endless, reference, characters, detached, wild);
}

void arrays()
{
    CXArray<int> const none; //: none => 0 elements
    CXArray<int> numbers; //: numbers => 3 elements = {1, 2, 3}
    for (int i = 1; i <= 3; ++i)
        numbers.Add(i);
    CXArray<CXArray<int>> nested; //: nested => 2 elements = {0 elements, 3 elements = {1, 2, 3}}
    nested.Add(none);
    nested.Add(numbers);
    CXArray<CXTString<wchar_t>> names; //: names => 2 elements = {L"b", L"c"}
    for (wchar_t const *name : { L"a", L"b", L"c" })
        names.Add(name);
    names.RemoveAt(0);
    CXArray<int> many; //: many => 1000 elements = {0, 0, 0, 0, 0, 0, 0, 0...}
    many.SetSize(1000);
    CStringList list; //: list => 2 strings = {[0] = L"one", [1] = L"two"}
    list.AddTail(L"one");
    list.AddTail(L"two");
    Damaged<CXArray<int>> wild; //: wild.object => damaged: -1515870811 of -1515870811 elements
    Damaged<CStringList> lost; //: lost.object => damaged: -1515870811 strings
    stop_here(none, numbers, nested, names, many, list, wild, lost);
}

void tables()
{
    CHashMap<int, int, int> squares; //: squares => 2 entries in 23 slots = {[2] = 4, [5] = 25}
    squares.Insert(5, 25);
    squares.Insert(2, 4);
    squares.Insert(3, 9);
    squares.Remove(3);
    CHashMap<CXTString<char>, char const *, CXArray<int>> lists; //: lists => 1 entries in 23 slots = {["a"] = 1 elements = {7}}
    CXArray<int> seven;
    seven.Add(7);
    lists.Insert("a", seven);
    CHashTable<int> keys; //: keys => 2 keys in 23 slots = {[16] = 1, [18] = 27}
    keys.Insert(27);
    keys.Insert(1);
    CIntMap ints; //: ints => 0 entries in 23 slots
    ints.Insert(8, -1);
    CIntMap const moved = std::move(ints); //: moved => 1 entries in 23 slots = {[8] = -1}
    CHashMap<int, int, int> const nothing; //: nothing => 0 entries in 23 slots
    CHashMap<int, int, int> const large(1000003); //: large => 0 entries in 1000003 slots
    Damaged<CIntMap> wild; //: wild.object => damaged: 2779096485 entries in 2779096485 slots
    stop_here(squares, lists, keys, ints, moved, nothing, large, wild);
}

void values()
{
    CXTime const never; //: never => no date = {seconds = 0}
    CXTime const leap(951782400 + 3661); //: leap => 2000-02-29 01:01:01 UTC = {seconds = 951786061}
    CXTime const first(1); //: first => 1970-01-01 00:00:01 UTC = {seconds = 1}
    CXTime const last(32535215999); //: last => 3000-12-31 23:59:59 UTC = {seconds = 32535215999}
    CXTime const beyond(-5); //: beyond => -5 s, no date = {seconds = -5}
    CXDuration const span(1, 2, 3, 4); //: span => 1 d 2 h 3 min 4 s
    CXDuration const back(-90); //: back => -0 d 0 h 1 min 30 s
    CXPoint const point(3, -4); //: point => (3, -4)
    CXSize const size(640, 480); //: size => 640 x 480
    CXRect const rect(1, 2, 11, 22); //: rect => (1, 2, 11, 22), 10 x 20
    CFPoint const real(0.5F, 2); //: real => (0.5, 2)
    CFSize const area(1.5F, 2); //: area => 1.5 x 2
    CFRect const box(0, 1, 2, 3); //: box => x 0 to 1, y 2 to 3
    CRGBColor const orange(255, 128, 0); //: orange => (255, 128, 0, 255)
    CRGB32Color const deep(70000, 0, 1); //: deep => (70000, 0, 1, 16777215)
    stop_here(never, leap, first, last, beyond, span, back, point, size, rect, real, area, box,
        orange, deep);
}

void custom_data()
{
    CCustomData simple; //: simple => 3 entries, 58 bytes = {[1] = -7, [2] = L"cube", [3] = 2.5}
    simple.SetInt(1, -7);
    simple.SetString(2, L"cube");
    simple.SetDouble(3, 2.5);
    CCustomData more; //: more => 7 entries, 120 bytes = {[1] = true, [2] = 9, [3] = 0.5, [4] = "x", [5] = {0x1, 0x2}, [6] seconds = 60, [7] 2 elements = {0x1, 0x0, 0x2, 0x0}}
    more.SetBool(1, 1);
    more.SetULongInt(2, 9);
    more.SetFloat(3, 0.5F);
    more.SetStringA(4, "x");
    more.SetBinary(5, "\1\2", 2);
    more.SetXTime(6, CXTime(60));
    short const shorts[] = { 1, 2 };
    more.SetArray(7, shorts, 2, 2);
    CCustomData outer; //: outer => 1 entries, 28 bytes = {[8] nested = {0x1, 0x0, 0x0, 0x0, 0x4, 0x0, 0x0, 0x0}...}
    CCustomData inner;
    inner.SetInt(1, 1);
    outer.SetCustomData(8, inner);
    CCustomData const nothing; //: nothing => 0 entries, 0 bytes
    unsigned int bytes = 0; // an entry whose size lies is shown as far as it goes
    CCustomData cut; //: cut => 1 entries, 16 bytes
    cut.SetInt(1, 2);
    static_cast<unsigned char *>(cut.GetData(bytes))[5] = 0xFF;
    kortools::data::Entry const entry { 7, 4, CCustomData::kindInt, nullptr }; //: entry => no entry
    Damaged<CCustomData> wild; //: wild.object => damaged: 2779096485 entries, 2779096485 of 2779096485 bytes
    stop_here(simple, more, outer, nothing, cut, entry, wild);
}

void trees()
{
    CTree tree; //: tree => tree = {[0] = {<CTreeNode> = flags 0x0, with children = {[0] = {<CTreeNode> = flags 0x0, m_number = 3}}, m_number = 1}, [1] = {<CTreeNode> = flags 0x4, m_number = 2}}
    auto *const first = new CLayer(1); //: *first => {<CTreeNode> = flags 0x0, with children = {[0] = {<CTreeNode> = flags 0x0, m_number = 3}}, m_number = 1}
    auto *const second = new CLayer(2);
    tree.AddChild(nullptr, first, true);
    tree.AddChild(nullptr, second, true);
    tree.AddChild(first, new CLayer(3), true);
    second->SetFlag(TreeNodeFlag(4), true);
    CTree const bare; //: bare => empty
    Damaged<CTreeNode> wild; //: wild.object => flags 0xa5a5a5a5, with children = {items = ???}
    stop_here(tree, first, bare, wild);
}

void failures_and_files()
{
    CXException const plain(L"too late"); //: plain => L"too late"
    CXUserException const told(L"told"); //: told => L"told"
    CXFileException const absent(CXFileException::fileNotFound, L"a.kor", L"gone"); //: absent => fileNotFound, file L"a.kor" = {message = L"gone"}
    CXArchiveException const bad(CXArchiveException::badIndex, L"b.kor"); //: bad => badIndex, file L"b.kor" = {message = L""}
    CXRuntimeClass const &record = CTree::classCreatorCTree; //: record => CTree, schema 2
    CXFile const closed; //: closed => closed, L""
    CXStdioFile const text; //: text => closed, L""
    CXMemFile memory; //: memory => 3 bytes, at 3 = {bytes = {0x61, 0x62, 0x63}}
    memory.Write("abc", 3);
    stop_here(plain, told, absent, bad, record, closed, text, memory);
}
// clang-format on

} // namespace

int main()
{
    texts();
    arrays();
    tables();
    values();
    custom_data();
    trees();
    failures_and_files();
}

// SPDX-License-Identifier: MIT
// CGuidMgr: hands out unique 64-bit identifiers, grouped by a class number, each with a unique
// 32-bit short form.
//
// Identifiers are asked for fresh, or registered when they are known already, such as those read
// from a file. Who registers one that is taken gets the next free one, so only the returned value
// counts. None is given twice while it is held; a released one may be.
//
// Every operation locks the manager: threads may share one. All of them take constant time, also
// where many registrations clash, but for RemoveAll(), copies and the first long row of clashes.
// Throws a CXMemoryException, and changes nothing, when memory is exhausted.
//
//   CGuidMgr identifiers(1000);
//   auto const first = identifiers.GetNewGuid(CGuidMgr::fresh, 0); // 1000
//   auto const read = identifiers.GetNewGuid(1000, 7);             // 1001: 1000 is taken
//   identifiers.ReleaseGuid(first);
#pragma once

#include "kortools/core/critical_section.h"
#include "kortools/core/hash_map.h"
#include "kortools/export.h"

#include <memory>

namespace kortools::data {
class TakenValues;
}

// Bits that the application gives a meaning; the manager only keeps them.
enum GuidFlags : unsigned int {};

class KORTOOLS_API CGuidMgr {
public:
    // Enumerators, because constants cannot be passed by reference across the DLL's boundary.
    enum : unsigned long long { fresh = 0xFFFFFFFFFFFFFFFF }; // asks for a fresh identifier
    enum : unsigned int { fresh32 = 0xFFFFFFFF };             // and for a fresh short form

    explicit CGuidMgr(unsigned int base); // where class 0 starts to count
    CGuidMgr(CGuidMgr const &other);
    CGuidMgr &operator=(CGuidMgr const &other);
    ~CGuidMgr();

    // The fresh identifiers of a class count up from its base value. Setting it makes them start
    // there again. Where none is set, the first fresh identifier sets one that lies far from those
    // of other classes.
    void SetClassBaseValue(unsigned int classNumber, unsigned long long base);
    unsigned long long GetClassBaseValue(unsigned int classNumber) const; // 0 when none is set

    // wanted 0     => 0, and nothing is registered
    // wanted fresh => the class's next identifier that is free
    // another      => that identifier, or the next one above it that is free
    // Above the largest identifier comes 0.
    unsigned long long GetNewGuid(unsigned long long const &wanted, unsigned int classNumber);

    // The same for a caller that knows short forms only: registers the identifier of that value
    // (fresh32: a fresh one) and returns the short form it got.
    unsigned int GetNewGuid32(unsigned int const &wanted, unsigned int classNumber);

    // The short form that the identifier would get now: itself when it fits in 32 bits, else a hash
    // of it; then the next one that is free.
    unsigned int MakeGuid32(unsigned long long const &guid) const;

    unsigned int GetGuidClass(unsigned long long const &guid) const; // 0 for an unknown one
    unsigned int GetGuid32(unsigned long long const &guid) const;    // 0 for an unknown one
    bool IsGuidExist(unsigned long long const &guid) const;
    bool IsGuid32Exist(unsigned int const &guid32) const;
    unsigned int GetCount() const;

    // Gives up an identifier and its short form. False when it is not held.
    bool ReleaseGuid(unsigned long long const &guid);
    bool ReleaseGuid32(unsigned int const &guid32);

    void RemoveAll(); // the classes' base values too

    void SetFlags(unsigned int flags, bool on); // the bits of `flags`; the others stay
    bool IsFlagSet(GuidFlags flags) const;      // any of them

private:
    struct GuidInfo {
        unsigned int m_class;
        unsigned int m_guid32;
    };
    struct GuidBaseValue {
        unsigned long long m_base;
        unsigned long long m_next; // the next value to hand out
        unsigned int m_base32;     // short form of the base
    };
    using GuidMap = CHashMap<unsigned long long, unsigned long long, GuidInfo>;
    using Guid32Map = CHashMap<unsigned int, unsigned int, unsigned long long>;
    using ClassMap = CHashMap<unsigned int, unsigned int, GuidBaseValue>;
    using Taken = std::unique_ptr<kortools::data::TakenValues>;

    GuidBaseValue &EnsureClass(unsigned int classNumber);
    unsigned long long FindFreeGuid(unsigned long long candidate) const;
    void Enter(unsigned long long guid, GuidInfo info);
    void Forget(unsigned long long guid, unsigned int guid32);

    mutable CXCriticalSection m_lock;
    GuidMap m_guids;
    Guid32Map m_guids32; // the short forms in use, with their identifiers
    ClassMap m_classes;
    unsigned int m_flags = 0;

    // The same identifiers and short forms once more, from the first long row of clashes on; until
    // then null.
    mutable Taken m_taken;
    mutable Taken m_taken32;
};

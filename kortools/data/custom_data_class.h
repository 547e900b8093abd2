// SPDX-License-Identifier: MIT
// CCustomDataClass: the base of classes that keep themselves in a custom data container, under
// identifiers of their own. CCustomData::SetCustomClass() stores such an object as one entry, a
// nested container.
//
//   void CGrid::WriteToData(CCustomData &data) const { data.SetInt(grid_step, m_step); }
//   bool CGrid::ReadFromData(CCustomData const &data)
//   {
//       return data.GetInt(grid_step, m_step, 10);
//   }
#pragma once

#include "kortools/export.h"

class CCustomData;

class KORTOOLS_API CCustomDataClass {
public:
    virtual ~CCustomDataClass();

    // Puts the object into an empty container. One that writes nothing is not stored at all.
    virtual void WriteToData(CCustomData &data) const = 0;

    // Takes the object from what WriteToData() has written; the result is that of
    // CCustomData::GetCustomClass(). Called with the lock of the outer container held.
    virtual bool ReadFromData(CCustomData const &data) = 0;

protected:
    CCustomDataClass() = default;
    CCustomDataClass(CCustomDataClass const &) = default;
    CCustomDataClass &operator=(CCustomDataClass const &) = default;
};

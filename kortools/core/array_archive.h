// SPDX-License-Identifier: MIT
// Arrays in the archive: the count, then the elements. The archive is a template parameter, so that
// arrays need its class only where they are serialized.
#pragma once

#include "kortools/core/throw.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <type_traits>
#include <utility>

namespace kortools::core {

template <class Archive, class T> void serialize_element(Archive &archive, T &element)
{
    if constexpr (requires { archive << std::as_const(element), archive >> element; }) {
        if (archive.IsLoading())
            archive >> element;
        else
            archive << std::as_const(element);
    } else if constexpr (requires { element.Serialize(archive); }) {
        element.Serialize(archive);
    } else {
        throw_invalid_argument();
    }
}

// Cuts an array that is being loaded to the elements that were read, however loading ends.
template <class Array> struct LoadedPart {
    Array &array;
    int count;
    ~LoadedPart() { array.SetSize(count); }
};

// Reads some of the `rest` elements that are to come. Elements of unknown length in the file get
// memory for as many as were read before, so a false count costs little.
template <class Archive, class Array> void load_array_step(Archive &archive, Array &array, int rest)
{
    LoadedPart<Array> loaded { array, array.GetSize() };
    int const first = loaded.count;
    if constexpr (requires { archive.ReadValues(array.GetData(), std::size_t()); }) {
        auto const step = archive.EnsureAvailable(
            static_cast<unsigned long long>(rest), sizeof *array.GetData());
        array.SetSize(first + static_cast<int>(step));
        archive.ReadValues(array.GetData() + first, static_cast<std::size_t>(step));
        loaded.count = array.GetSize();
    } else {
        array.SetSize(first + std::min(rest, std::max(first, 64)));
        for (; loaded.count < array.GetSize(); ++loaded.count)
            serialize_element(archive, array.GetData()[loaded.count]);
    }
}

template <class Archive, class Array> void load_array(Archive &archive, Array &array)
{
    unsigned long long const count = archive.ReadCount();
    if (count > std::numeric_limits<int>::max()) {
        archive.EnsureAvailable(count, 1); // most likely a damaged file: end of file
        throw_invalid_argument();
    }
    array.SetSize(0);
    while (array.GetSize() < static_cast<int>(count))
        load_array_step(archive, array, static_cast<int>(count) - array.GetSize());
}

template <class Archive, class Array> void serialize_array(Archive &archive, Array &array)
{
    static_assert(
        requires { sizeof(Archive); },
        "include kortools/archive/archive.h to use a CXArray of this type");
    if (archive.IsLoading()) {
        load_array(archive, array);
        return;
    }
    archive.WriteCount(static_cast<unsigned long long>(array.GetSize()));
    if constexpr (requires { archive.WriteValues(array.GetData(), std::size_t()); }) {
        archive.WriteValues(array.GetData(), static_cast<std::size_t>(array.GetSize()));
    } else {
        for (auto &element : array)
            serialize_element(archive, element);
    }
}

} // namespace kortools::core

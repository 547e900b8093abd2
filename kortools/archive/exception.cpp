// SPDX-License-Identifier: MIT
#include "kortools/archive/exception.h"

#include "kortools/archive/cause_text.h"
#include "kortools/archive/pending_exceptions.h"
#include "kortools/platform/message_box.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <new>

static constexpr unsigned int exception_schema = 1 | CXRuntimeClass::not_serializable;

namespace kortools::archive {
namespace {

constexpr std::size_t reserve_size = 256; // bytes, more than any exception of the library has

struct alignas(std::max_align_t) Reserve {
    unsigned char bytes[reserve_size];
};
constinit Reserve s_reserves[32] = {};
constinit std::atomic<bool> s_taken[std::size(s_reserves)] = {};

void *take_reserve(std::size_t size)
{
    if (size <= reserve_size) {
        for (std::size_t i = 0; i < std::size(s_reserves); ++i) {
            if (!s_taken[i].exchange(true))
                return &s_reserves[i];
        }
    }
    throw std::bad_alloc();
}

bool give_back_reserve(void *block)
{
    for (std::size_t i = 0; i < std::size(s_reserves); ++i) {
        if (block == &s_reserves[i]) {
            s_taken[i] = false;
            return true;
        }
    }
    return false;
}

} // namespace
} // namespace kortools::archive

KOR_IMPLEMENT_ABSTRACT_CLASS(CXException, CXObject, exception_schema)
KOR_IMPLEMENT_ABSTRACT_CLASS(CXFileException, CXException, exception_schema)
KOR_IMPLEMENT_ABSTRACT_CLASS(CXArchiveException, CXException, exception_schema)
KOR_IMPLEMENT_ABSTRACT_CLASS(CXMemoryException, CXException, exception_schema)
KOR_IMPLEMENT_ABSTRACT_CLASS(CXResourceException, CXException, exception_schema)
KOR_IMPLEMENT_ABSTRACT_CLASS(CXUserException, CXException, exception_schema)
KOR_IMPLEMENT_ABSTRACT_CLASS(CXInvalidArgException, CXException, exception_schema)

CXException::CXException(CXTString<wchar_t> const &message)
    : m_message(message)
{
}

CXException::CXException(kortools::core::NoBlock none) noexcept
    : m_message(none)
{
}

CXException::~CXException()
{
    if (m_pendingThread != 0)
        kortools::archive::PendingExceptions::remove(this);
}

bool CXException::ReportError(unsigned int flags)
{
    CXTString<wchar_t> const message = GetErrorMessage();
    if (message.IsEmpty())
        return false;
    kortools::platform::show_message_box(message, flags);
    return true;
}

CXTString<wchar_t> CXException::GetErrorMessage() const
{
    return m_message;
}

void CXException::Delete()
{
    delete this; // the language makes this nothing on a null pointer
}

void *CXException::operator new(std::size_t size)
{
    void *const block = std::malloc(size);
    return block ? block : kortools::archive::take_reserve(size);
}

void CXException::operator delete(void *block) noexcept
{
    if (!kortools::archive::give_back_reserve(block))
        std::free(block);
}

CXArchiveException::CXArchiveException(ArchiveExceptionType cause,
    CXTString<wchar_t> const &fileName, CXTString<wchar_t> const &message)
    : CXException(message)
    , m_cause(cause)
    , m_fileName(fileName)
{
}

CXTString<wchar_t> CXArchiveException::GetErrorMessage() const
{
    using namespace kortools::archive;
    if (m_cause == none)
        return m_message;
    int const known = m_cause > none && m_cause <= bufferFull ? m_cause : genericException;
    return get_cause_text(first_archive_text, known, m_fileName);
}

void CXArchiveException::Throw(ArchiveExceptionType cause, CXTString<wchar_t> const &fileName)
{
    kortools::archive::throw_exception(new CXArchiveException(cause, fileName));
}

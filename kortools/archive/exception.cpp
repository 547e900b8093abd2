// SPDX-License-Identifier: MIT
#include "kortools/archive/exception.h"

#include "kortools/archive/cause_text.h"
#include "kortools/archive/pending_exceptions.h"
#include "kortools/platform/message_box.h"

static constexpr unsigned int exception_schema = 1 | CXRuntimeClass::not_serializable;

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

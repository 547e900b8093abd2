// SPDX-License-Identifier: MIT
#include "kortools/app/progress_callback.h"

#include "kortools/archive/archive.h"
#include "kortools/core/array.h"

namespace {

struct Record {
    ProcessProgressCallback m_callback = nullptr;
    void *m_user = nullptr;
    bool m_cancelled = false;
    unsigned long long m_serial = 0; // which push this is, of all
};

struct Stack {
    CXArray<Record> m_records; // the last one is the topmost
    unsigned long long m_pushes = 0;

    Record *top() { return m_records.IsEmpty() ? nullptr : m_records.end() - 1; }
};

// Never destroyed: static objects of the program may still report while they are.
Stack &get_stack()
{
    static auto *const s_stack = new Stack;
    return *s_stack;
}

} // namespace

void progressPushCallback(ProcessProgressCallback callback, void *user)
{
    Stack &stack = get_stack();
    if (callback)
        stack.m_records.Add(Record { callback, user, false, ++stack.m_pushes });
}

bool progressPopCallback()
{
    Stack &stack = get_stack();
    Record const *const top = stack.top();
    bool const cancelled = top && top->m_cancelled;
    if (top)
        stack.m_records.RemoveAt(stack.m_records.GetUpperBound());
    return cancelled;
}

ProcessProgressCallback progressGetCallback(void *&user)
{
    Record const *const top = get_stack().top();
    user = top ? top->m_user : nullptr;
    return top ? top->m_callback : nullptr;
}

bool progressCallCallback(unsigned int flags, ProcessProgressInfo const &info)
{
    Stack &stack = get_stack();
    if (!stack.top())
        return false;
    Record const asked = *stack.top(); // the callback may push, and so move the records
    int const index = stack.m_records.GetUpperBound();
    bool const answer = asked.m_callback(flags, info, asked.m_user);
    bool const is_there
        = index < stack.m_records.GetSize() && stack.m_records[index].m_serial == asked.m_serial;
    if ((flags & progressQueryCancel) != 0 && is_there)
        stack.m_records[index].m_cancelled = answer;
    return answer;
}

bool progressUserCancel()
{
    Record const *const top = get_stack().top();
    return top && top->m_cancelled;
}

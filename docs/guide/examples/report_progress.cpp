// SPDX-License-Identifier: MIT
#include <cstdio>
#include <kortools/kortools.h>

// The library only passes it on.
struct ProcessProgressInfo {
    int done;
    int total;
};

// The operation. It knows of no window.
static bool import(int total)
{
    for (int done = 0; done < total; ++done) {
        if (progressCallCallback(progressQueryCancel, { done, total }))
            return false; // the user has cancelled
        // ... import one thing
    }
    return true;
}

// Whoever starts it. True when the user has cancelled.
struct Dialog {
    int limit;
};

static bool show_progress(unsigned int, ProcessProgressInfo const &info, void *user)
{
    std::printf("%d of %d\n", info.done, info.total);
    return info.done >= static_cast<Dialog *>(user)->limit;
}

int main()
{
    Dialog dialog { 1 };
    progressPushCallback(show_progress, &dialog);
    bool const finished = import(3);
    bool const cancelled = progressPopCallback();
    std::printf(finished ? "finished\n" : cancelled ? "cancelled\n" : "failed\n");

    std::printf(import(3) ? "finished without an audience\n" : "failed\n");
}

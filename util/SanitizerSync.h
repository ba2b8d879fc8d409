// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Qt is not built with ThreadSanitizer, so the hand-offs it makes between threads (a queued
// call, QThread::wait) are invisible to it. These mark the few that our objects rely on;
// without the sanitizer they are empty.
class SanitizerSync
{
public:
    SanitizerSync() = delete;

    // Everything this thread did before release(token) happens before everything another
    // thread does after acquire(token).
    static void release(const void* token);
    static void acquire(const void* token);
};

// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/SanitizerSync.h"

#if defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#define BRINHOLT_TSAN 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#include <sanitizer/tsan_interface.h>
#define BRINHOLT_TSAN 1
#endif
#endif

void SanitizerSync::release(const void* token)
{
#ifdef BRINHOLT_TSAN
    __tsan_release(const_cast<void*>(token));
#else
    (void)token;
#endif
}

void SanitizerSync::acquire(const void* token)
{
#ifdef BRINHOLT_TSAN
    __tsan_acquire(const_cast<void*>(token));
#else
    (void)token;
#endif
}

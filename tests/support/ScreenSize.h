// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QRect>
#include <QtCore/QSize>

// Makes the primary screen report another size while it lives, the way the platform reports
// a change of resolution, so that a page can be laid out for a screen the host does not
// have. The old size comes back at the end.
class ScreenSize
{
public:
    explicit ScreenSize(const QSize& size);
    ~ScreenSize();
    ScreenSize(const ScreenSize&) = delete;
    ScreenSize& operator=(const ScreenSize&) = delete;

private:
    static void apply(const QRect& geometry, const QRect& available);

    QRect previous;
    QRect previousAvailable;
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QRect>
#include <QtCore/QSize>

#include <memory>

class QWindow;

// Makes the primary screen report another size while it lives, the way the platform reports
// a change of resolution, so that a page can be laid out for a screen the host does not
// have. The old size comes back at the end.
class ScreenSize
{
public:
    explicit ScreenSize(const QSize& size);
    ~ScreenSize();
    Q_DISABLE_COPY(ScreenSize)

    // The rows of a first-start test, column "screen": the platform's own screen (an
    // invalid size), and one where the fractions of a pixel round up on two sides and down
    // on the other two.
    static void addFirstStartRows();
    // A stand-in of `size` while it lives, or none for the platform's own screen.
    static std::unique_ptr<ScreenSize> unlessOwn(const QSize& size);
    // Checks that `window` is placed as a first start places it on a screen of `host`:
    // seventy percent of it, centred.
    static void checkFirstStartGeometry(const QWindow& window, const QSize& host);

private:
    static void apply(const QRect& geometry, const QRect& available);

    QRect previous;
    QRect previousAvailable;
};

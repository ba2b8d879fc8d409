// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGui/QColor>

#include <memory>

class QPlatformTheme;

// Stands in for the host's platform theme while it lives, with a window text colour the
// test chooses (or no palette at all), so the dark-mode logic can be driven.
class HostTheme
{
public:
    HostTheme();
    ~HostTheme();
    Q_DISABLE_COPY(HostTheme)

    void setWindowText(const QColor& color);
    void setNoPalette();

private:
    class Theme;
    std::unique_ptr<Theme> theme;
    QPlatformTheme* previous = nullptr;
};

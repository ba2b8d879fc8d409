// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/HostTheme.h"

#include <QtGui/QPalette>
#include <qpa/qplatformtheme.h>
#include <private/qguiapplication_p.h>

class HostTheme::Theme : public QPlatformTheme
{
public:
    const QPalette* palette(Palette type) const override
    {
        if (type != SystemPalette || !hasPalette)
            return nullptr;
        return &systemPalette;
    }

    QPalette systemPalette;
    bool hasPalette = true;
};

HostTheme::HostTheme()
    : theme(new Theme)
    , previous(QGuiApplicationPrivate::platform_theme)
{
    QGuiApplicationPrivate::platform_theme = theme.get();
}

HostTheme::~HostTheme()
{
    QGuiApplicationPrivate::platform_theme = previous;
}

void HostTheme::setWindowText(const QColor& color)
{
    theme->hasPalette = true;
    theme->systemPalette.setColor(QPalette::Active, QPalette::WindowText, color);
    theme->systemPalette.setColor(QPalette::Inactive, QPalette::WindowText, color);
    theme->systemPalette.setColor(QPalette::Disabled, QPalette::WindowText, color);
}

void HostTheme::setNoPalette()
{
    theme->hasPalette = false;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/ScreenSize.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <qpa/qwindowsysteminterface.h>

ScreenSize::ScreenSize(const QSize& size)
{
    QScreen* screen = QGuiApplication::primaryScreen();
    previous = screen->geometry();
    previousAvailable = screen->availableGeometry();
    apply(QRect(previous.topLeft(), size), QRect(previous.topLeft(), size));
}

ScreenSize::~ScreenSize()
{
    apply(previous, previousAvailable);
}

void ScreenSize::apply(const QRect& geometry, const QRect& available)
{
    QWindowSystemInterface::handleScreenGeometryChange(QGuiApplication::primaryScreen(), geometry, available);
    QWindowSystemInterface::flushWindowSystemEvents();
}

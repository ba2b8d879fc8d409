// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/ScreenSize.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtTest/QtTest>
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

void ScreenSize::addFirstStartRows()
{
    QTest::addColumn<QSize>("screen");
    QTest::newRow("the platform's own screen") << QSize();
    QTest::newRow("1366 by 768") << QSize(1366, 768);
}

std::unique_ptr<ScreenSize> ScreenSize::unlessOwn(const QSize& size)
{
    return size.isValid() ? std::make_unique<ScreenSize>(size) : nullptr;
}

void ScreenSize::checkFirstStartGeometry(const QWindow& window, const QSize& host)
{
    // The defaults are fractions of the screen, which the stored-setting reader gives back
    // as whole numbers.
    const double width = host.width();
    const double height = host.height();
    QCOMPARE(window.width(), QVariant(width * 0.7).toInt());
    QCOMPARE(window.height(), QVariant(height * 0.7).toInt());
    QCOMPARE(window.x(), QVariant(width / 2 - width * 0.35).toInt());
    QCOMPARE(window.y(), QVariant(height / 2 - height * 0.35).toInt());
}

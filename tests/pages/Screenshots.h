// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtTest/QtTest>

// Where the screenshot tests leave their pictures: <build>/screenshots, BRINHOLT_BINARY_DIR
// being the build folder.
namespace Screenshots {

inline QString path(const QString& file)
{
    return QDir(BRINHOLT_BINARY_DIR "/screenshots").filePath(file);
}

// Saves `shot` there as `file`, and says where; false if it could not be written.
inline bool save(const QImage& shot, const QString& file)
{
    const QString where = path(file);
    qInfo().noquote() << "screenshot" << where;
    return shot.save(where);
}

} // namespace Screenshots

// Skips every test of the class without an X display, and makes the pictures' folder.
#define BRINHOLT_SCREENSHOTS_NEED_X()                                                           \
    do {                                                                                        \
        if (QGuiApplication::platformName() != QLatin1String("xcb"))                            \
            QSKIP("needs an X display: run under xvfb-run with QT_QPA_PLATFORM=xcb");           \
        QVERIFY(QDir().mkpath(BRINHOLT_BINARY_DIR "/screenshots"));                             \
    } while (false)

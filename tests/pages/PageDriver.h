// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PageHarness.h"
#include "PageInput.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QSettings>
#include <QtCore/QSize>
#include <QtCore/QUrl>
#include <QtCore/QVariant>
#include <QtGui/QFont>
#include <QtGui/QGuiApplication>
#include <QtQuick/QQuickItem>
#include <QtTest/QtTest>

#include <algorithm>
#include <initializer_list>
#include <utility>

// What the page tests do with the window: start it at a known size, press the bar's and the
// pages' buttons, leave a page, work a page's controls by id, and read what reached the INI
// file. BRINHOLT_BINARY_DIR is where the build leaves the catalogues.
namespace PageDriver {

// The main window at `size`, placed in the screen's corner, in `language`.
inline bool startMain(PageHarness& h, QSize size = QSize(800, 600), const QString& language = QStringLiteral("en"))
{
    h.writeSetting("windowWidth", size.width());
    h.writeSetting("windowHeight", size.height());
    h.writeSetting("windowX", 0);
    h.writeSetting("windowY", 0);
    return h.start(true, language);
}

// A click on the control named `button`, scrolled into view first as a user would.
inline void press(PageHarness& h, const QString& button)
{
    QQuickItem* item = h.item(button);
    QVERIFY2(item, qPrintable(button));
    QVERIFY2(PageInput::click(h.window(), h.loadedPage(), item), qPrintable(button));
}

// Leaves the page the way a user does, and waits until it is gone.
inline bool leave(PageHarness& h)
{
    QPointer<QQuickItem> page = h.loadedPage();
    press(h, QStringLiteral("baroButton"));
    for (int i = 0; i < 300 && !page.isNull(); ++i)
        QTest::qWait(10);
    return page.isNull();
}

inline QObject* control(QQuickItem* page, const char* id)
{
    return PageHarness::byId(page, QString::fromLatin1(id));
}

inline QVariant prop(QQuickItem* page, const char* id, const char* property)
{
    QObject* object = control(page, id);
    return object ? object->property(property) : QVariant();
}

inline void set(QQuickItem* page, const char* id, const char* property, const QVariant& value)
{
    QObject* object = control(page, id);
    QVERIFY2(object, id);
    QVERIFY2(object->setProperty(property, value), id);
}

// What is on disk, as another reader of the file sees it.
inline QVariant stored(PageHarness& h, const QString& key)
{
    QSettings ini(h.folder().filePath(QStringLiteral("brinholt.ini")), QSettings::IniFormat);
    return ini.value(key);
}

// Checks what reached the INI file, read as whole numbers, key by key.
inline void checkStored(PageHarness& h, std::initializer_list<std::pair<const char*, int>> expected)
{
    for (const auto& [key, value] : expected) {
        const int got = stored(h, QLatin1String(key)).toInt();
        QVERIFY2(got == value, qPrintable(QStringLiteral("%1 is %2, not %3").arg(QLatin1String(key)).arg(got).arg(value)));
    }
}

inline bool isDark(PageHarness& h)
{
    return PageHarness::evaluate(h.window(), QStringLiteral("Material.theme === Material.Dark")).toBool();
}

inline QUrl loaderSource(PageHarness& h)
{
    return h.find(QStringLiteral("loader"))->property("source").toUrl();
}

// The built catalogues, where the program looks for them: beside its settings.
inline bool copyCatalogues(const QString& folder)
{
    for (const char* name : {"Brinholt_en_US.qm", "Brinholt_fr_FR.qm", "qt_fr.qm", "qtbase_fr.qm"}) {
        if (!QFile::copy(QDir(BRINHOLT_BINARY_DIR).filePath(QLatin1String(name)), QDir(folder).filePath(QLatin1String(name))))
            return false;
    }
    return true;
}

// For the tests that photograph pages: true on an X display, once the folder the pictures
// go to is there and the style's upper-casing of control texts is off, as start-up has it.
inline bool readyToPhotograph()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return false;
    QFont font = QGuiApplication::font();
    font.setCapitalization(QFont::MixedCase);
    QGuiApplication::setFont(font);
    return QDir().mkpath(BRINHOLT_BINARY_DIR "/screenshots");
}

// A start to come in `theme` and `language`, with the catalogues in place and no serial
// port to look for.
inline bool prepareLook(PageHarness& h, int theme, const QString& language)
{
    if (!copyCatalogues(h.folder().path()))
        return false;
    h.writeSetting("theme", theme);
    h.writeSetting("language", language == "fr" ? 1 : 0);
    h.writeSetting("SettingSerialPort", QStringLiteral("None"));
    return true;
}

// What the pages themselves said, of all the harness did not expect: the receiver and its
// sources have words of their own when a page restarts them.
inline QStringList pageWarnings(PageHarness& h)
{
    QStringList left;
    for (const QString& message : h.unexpectedMessages()) {
        if (message.startsWith(QLatin1String("qrc:")) || message.startsWith(QLatin1String("file:"))
            || message.contains(QLatin1String("QML")))
            left << message;
    }
    return left;
}

// Fails on any message the harness does not expect: QML warnings above all.
// Fails on any message the pages and the core do not write on their own, but for lines
// that begin with one of `alsoExpected`: what a source the test switched on says.
inline void checkClean(PageHarness& h, const QStringList& alsoExpected = QStringList())
{
    QStringList unexpected = h.unexpectedMessages();
    for (const QString& prefix : alsoExpected) {
        unexpected.erase(std::remove_if(unexpected.begin(), unexpected.end(),
                                        [&](const QString& line) { return line.startsWith(prefix); }),
                         unexpected.end());
    }
    QVERIFY2(unexpected.isEmpty(), qPrintable(unexpected.join(QLatin1Char('\n'))));
}

} // namespace PageDriver

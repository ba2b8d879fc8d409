// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"
#include "Screenshots.h"
#include "tests/support/Columns.h"

#include "app/BackEnd.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtGui/QScreen>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

using namespace PageDriver;

namespace {

constexpr qint64 T0 = 1700000040;

// Every control of a page: the items that a user works, with a name of their own.
void controls(QQuickItem* item, QList<QQuickItem*>& into)
{
    if (!item || !item->isVisible())
        return;
    if (!item->objectName().isEmpty()
        && (item->inherits("QQuickControl") || item->inherits("QQuickTextInput") || item->inherits("QQuickText")))
        into << item;
    const auto children = item->childItems();
    for (QQuickItem* child : children)
        controls(child, into);
}

} // namespace

// The settings pages on an X display at the size of a first start, photographed in both
// themes and, for the settings page, in French; the pictures land in <build>/screenshots.
class TestSettingsScreens : public QObject
{
    Q_OBJECT

private:
    static QQuickItem* flickable(QQuickItem* page)
    {
        return page->property("contentItem").value<QQuickItem*>();
    }

    static bool save(PageHarness& h, const QString& file)
    {
        QTest::qWait(150);
        const QImage shot = h.window()->grabWindow();
        return !shot.isNull() && Screenshots::save(shot, file);
    }

private slots:
    void initTestCase()
    {
        if (!readyToPhotograph())
            QSKIP("needs an X display: run under xvfb-run with QT_QPA_PLATFORM=xcb");
    }

    void page_data()
    {
        Columns::add<QString, int, QString>("page", "theme", "language");
        for (const char* page : {"settings", "settingsConnections", "quillmereCalibration"}) {
            QTest::addRow("%s light", page) << page << 0 << "en";
            QTest::addRow("%s dark", page) << page << 1 << "en";
        }
        QTest::newRow("settings light French") << "settings" << 0 << "fr";
        QTest::newRow("settings dark French") << "settings" << 1 << "fr";
    }

    void page()
    {
        QFETCH(QString, page);
        QFETCH(int, theme);
        QFETCH(QString, language);
        PageHarness h;
        // A first start: no window geometry stored, so the window takes 70% of the screen.
        QVERIFY(prepareLook(h, theme, language));
        QVERIFY(h.start(true, language));
        const QSize firstStart = QGuiApplication::primaryScreen()->size() * 0.7;
        QTRY_VERIFY(qAbs(h.window()->width() - firstStart.width()) <= 1);
        h.sample(T0, 1013.25);

        const QString properties = page == "settings" ? QStringLiteral(", {\"loader\": loader}") : QString();
        PageHarness::evaluate(h.window(), QStringLiteral("loader.setSource(\"qrc:/%1\"%2)").arg(page, properties));
        QQuickItem* shown = h.loadedPage();
        QVERIFY(shown);
        if (page == "quillmereCalibration") {
            // As it looks once the device has answered.
            h.backEnd()->slot_calibrationValues(QStringLiteral("$PWEGB,CAL,0.00,0,1013.25,1012.80*00"));
        }
        QTest::qWait(200);

        // Nothing reaches past the right edge; what is below the window is reached by scrolling.
        QList<QQuickItem*> all;
        controls(shown, all);
        QVERIFY(all.size() > 5);
        for (QQuickItem* control : qAsConst(all)) {
            const QRectF r = control->mapRectToItem(shown, QRectF(0, 0, control->width(), control->height()));
            QVERIFY2(r.left() >= -0.5 && r.right() <= shown->width() + 0.5,
                     qPrintable(QStringLiteral("%1 spans %2 to %3 of %4")
                                        .arg(control->objectName())
                                        .arg(r.left())
                                        .arg(r.right())
                                        .arg(shown->width())));
        }
        const QString theme_ = theme == 1 ? QStringLiteral("dark") : QStringLiteral("light");
        const QString suffix = language == "fr" ? QStringLiteral("-fr") : QString();
        QVERIFY(save(h, QStringLiteral("%1-%2%3.png").arg(page, theme_, suffix)));

        QQuickItem* view = flickable(shown);
        QVERIFY(view && view->inherits("QQuickFlickable"));
        const qreal overflow = view->property("contentHeight").toReal() - view->height();
        if (overflow > 0) {
            // The end of the page comes into the window.
            QMetaObject::invokeMethod(view, "flick", Q_ARG(qreal, 0), Q_ARG(qreal, -6000));
            QTRY_VERIFY_WITH_TIMEOUT(qAbs(view->property("contentY").toReal() - overflow) < 1.0, 5000);
            QVERIFY(save(h, QStringLiteral("%1-%2%3-end.png").arg(page, theme_, suffix)));
        }
        // The last control of the page lies inside the window once scrolled.
        QQuickItem* last = all.last();
        for (QQuickItem* control : qAsConst(all)) {
            if (control->mapToItem(shown, QPointF(0, control->height())).y()
                > last->mapToItem(shown, QPointF(0, last->height())).y())
                last = control;
        }
        const qreal bottom = last->mapToItem(shown, QPointF(0, last->height())).y();
        QVERIFY2(bottom <= shown->height() + 0.5, qPrintable(last->objectName()));
        h.find("loader")->setProperty("source", QUrl("qrc:/BaroSwipe"));
    }
};

QTEST_MAIN(TestSettingsScreens)
#include "tst_settingsscreens.moc"

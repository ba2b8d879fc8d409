// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"

#include "app/BackEnd.h"
#include "app/TranslationHandler.h"
#include "tests/support/Columns.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtGui/QColor>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

// The help page: the manual, the privacy policy at the press of a button, links that leave
using namespace PageDriver;

// the program.
class TestHelpPage : public QObject
{
    Q_OBJECT

private:
    static bool startHelp(PageHarness& h, const QString& language = QStringLiteral("en"), int theme = 0)
    {
        h.writeSetting("theme", theme);
        h.writeSetting("language", language == "fr" ? 1 : 0);
        if (!PageDriver::startMain(h, QSize(800, 600), language))
            return false;
        click(h, h.item("helpButton"));
        return h.item("webview", h.loadedPage()) != nullptr;
    }

    static void click(PageHarness& h, QQuickItem* item)
    {
        QVERIFY(item);
        QTest::mouseClick(h.window(), Qt::LeftButton, Qt::NoModifier,
                          item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
    }

    static QString plainText(PageHarness& h)
    {
        QQuickItem* webview = h.item("webview", h.loadedPage());
        return PageHarness::evaluate(webview, "getText(0, length)").toString();
    }

    static QObject* verticalBar(PageHarness& h)
    {
        return PageHarness::evaluate(h.find("scrollv", h.loadedPage()), "ScrollBar.vertical").value<QObject*>();
    }

    static QObject* horizontalBar(PageHarness& h)
    {
        return PageHarness::evaluate(h.find("scrollv", h.loadedPage()), "ScrollBar.horizontal").value<QObject*>();
    }

    static double position(PageHarness& h) { return verticalBar(h)->property("position").toDouble(); }

private slots:
    void theHelpOpensOnTheManualAtItsTop()
    {
        PageHarness h;
        QVERIFY(startHelp(h));
        QCOMPARE(h.find("loader")->property("source").toUrl(), QUrl("qrc:/Help_textview"));
        QObject* button = h.find("btnPolicy", h.loadedPage());
        QCOMPARE(button->property("text").toString(), QStringLiteral("Privacy Policy"));
        QCOMPARE(button->property("gotoPrivacy").toBool(), true);
        QQuickItem* webview = h.item("webview", h.loadedPage());
        QCOMPARE(PageHarness::evaluate(webview, "textFormat === Text.RichText").toBool(), true);
        QCOMPARE(webview->property("readOnly").toBool(), true);
        QCOMPARE(webview->property("hasScrolled").toBool(), false);
        QVERIFY(plainText(h).contains("Troubleshooting"));
        QVERIFY(plainText(h).contains("The barometer page"));
        // The manual is long: the page scrolls, and starts at the top.
        QVERIFY(verticalBar(h)->property("size").toDouble() < 0.2);
        QCOMPARE(position(h), 0.0);
        QCOMPARE(PageHarness::evaluate(verticalBar(h), "policy === ScrollBar.AlwaysOn").toBool(), true);
        QCOMPARE(PageHarness::evaluate(horizontalBar(h), "policy === ScrollBar.AlwaysOff").toBool(), true);
        checkClean(h);
    }

    void theButtonSwitchesBetweenHelpAndPolicyEachTimeFromTheTop()
    {
        PageHarness h;
        QVERIFY(startHelp(h));
        QObject* button = h.find("btnPolicy", h.loadedPage());
        verticalBar(h)->setProperty("position", 0.5);
        QCOMPARE(position(h), 0.5);

        click(h, h.item("btnPolicy", h.loadedPage()));
        QVERIFY(plainText(h).contains("collects nothing else"));
        QVERIFY(!plainText(h).contains("Troubleshooting"));
        QCOMPARE(button->property("text").toString(), QStringLiteral("Back to help"));
        QCOMPARE(button->property("gotoPrivacy").toBool(), false);
        QCOMPARE(position(h), 0.0);
        QCOMPARE(horizontalBar(h)->property("position").toDouble(), 0.0);

        verticalBar(h)->setProperty("position", 0.3);
        click(h, h.item("btnPolicy", h.loadedPage()));
        QVERIFY(plainText(h).contains("Troubleshooting"));
        QCOMPARE(button->property("text").toString(), QStringLiteral("Privacy Policy"));
        QCOMPARE(button->property("gotoPrivacy").toBool(), true);
        QCOMPARE(position(h), 0.0);
        checkClean(h);
    }

    void thePolicyFollowsTheLanguageWhileTheManualStaysEnglish()
    {
        PageHarness h;
        QVERIFY(copyCatalogues(h.folder().path()));
        QVERIFY(startHelp(h, "fr"));
        QObject* button = h.find("btnPolicy", h.loadedPage());
        QCOMPARE(button->property("text").toString(), QCoreApplication::translate("Help_textview", "Privacy Policy"));
        QVERIFY(button->property("text").toString() != QStringLiteral("Privacy Policy"));
        QVERIFY(plainText(h).contains("Troubleshooting"));
        click(h, h.item("btnPolicy", h.loadedPage()));
        QVERIFY(plainText(h).contains(QString::fromUtf8("politique de confidentialité")));
        QCOMPARE(button->property("text").toString(), QCoreApplication::translate("Help_textview", "Back to help"));
        h.translations().selectLanguage("en");
        checkClean(h);
    }

    void aLinkOpensOutsideAndNotInThePage()
    {
        PageHarness h;
        QVERIFY(startHelp(h));
        QQuickItem* webview = h.item("webview", h.loadedPage());
        const QString before = plainText(h);
        // Bring the link at the end of the manual into view and click it.
        const int at = before.lastIndexOf("www.quillmere.com/skerry");
        QVERIFY(at > 0);
        verticalBar(h)->setProperty("position", 1.0 - verticalBar(h)->property("size").toDouble());
        QTest::qWait(50);
        const QRectF place = PageHarness::evaluate(webview, QStringLiteral("positionToRectangle(%1)").arg(at + 4)).toRectF();
        const QPointF inScene = webview->mapToScene(place.center());
        QVERIFY2(inScene.y() > 0 && inScene.y() < h.window()->height(), qPrintable(QString::number(inScene.y())));
        QCOMPARE(PageHarness::evaluate(webview, QStringLiteral("linkAt(%1, %2)").arg(place.center().x()).arg(place.center().y()))
                         .toString(),
                 QStringLiteral("https://www.quillmere.com/skerry"));
        QTest::mouseClick(h.window(), Qt::LeftButton, Qt::NoModifier, inScene.toPoint());
        QTRY_COMPARE(h.openedUrls().size(), 1);
        QCOMPARE(h.openedUrls().at(0), QUrl("https://www.quillmere.com/skerry"));
        QCOMPARE(plainText(h), before);
        checkClean(h);
    }

    void widerWindowRewrapsTheText()
    {
        PageHarness h;
        QVERIFY(startHelp(h));
        QQuickItem* page = h.loadedPage();
        QQuickItem* webview = h.item("webview", page);
        QCOMPARE(webview->width(), page->width());
        const int lines = webview->property("lineCount").toInt();
        h.window()->resize(1200, 600);
        QTRY_COMPARE(page->width(), 1200.0);
        QTRY_COMPARE(webview->width(), 1200.0);
        QVERIFY2(webview->property("lineCount").toInt() < lines,
                 qPrintable(QString("%1 %2").arg(lines).arg(webview->property("lineCount").toInt())));
        checkClean(h);
    }

    void theTextTakesTheThemesColour_data()
    {
        Columns::ints("theme", {{"light", 0}, {"dark", 1}});
    }

    void theTextTakesTheThemesColour()
    {
        QFETCH(int, theme);
        PageHarness h;
        QVERIFY(startHelp(h, "en", theme));
        const QColor text = h.find("webview", h.loadedPage())->property("color").value<QColor>();
        const QColor background = h.loadedPage()->property("color").value<QColor>();
        QCOMPARE(text.lightness() > 128, theme == 1);
        QCOMPARE(background.lightness() > 128, theme == 0);
        checkClean(h);
    }
};

QTEST_MAIN(TestHelpPage)
#include "tst_helppage.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"
#include "tests/support/Columns.h"
#include "tests/support/LogFixture.h"

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtGui/QImage>
#include <QtTest/QtTest>

// The help and the privacy policies that ship in the resources, after BackEnd's rewriting:
// whole, with every picture in the resources and every link leading out of the program.
class TestShippedDocuments : public QObject
{
    Q_OBJECT

private:
    static QStringList captures(const QString& text, const QString& pattern)
    {
        QStringList found;
        auto matches = QRegularExpression(pattern).globalMatch(text);
        while (matches.hasNext())
            found << matches.next().captured(1);
        return found;
    }

    static QString document(const QString& which, int language)
    {
        LogFixture f;
        f.backEnd().setSetting("language", language);
        return which == "help" ? f.backEnd().getHelpHtml() : f.backEnd().getPrivacyPolicy();
    }

private slots:
    void documents_data()
    {
        Columns::add<QString, int, QString>("which", "language", "mustSay");
        QTest::newRow("help") << "help" << 0 << "Troubleshooting";
        QTest::newRow("help, French user") << "help" << 1 << "Troubleshooting";
        QTest::newRow("policy, English") << "policy" << 0 << "collects nothing else";
        QTest::newRow("policy, French") << "policy" << 1 << QString::fromUtf8("ne collecte rien d'autre");
    }

    // What the manual says of the pages matches what they do.
    void manualTellsWhatThePagesDo_data()
    {
        QTest::addColumn<QString>("claim");
        QTest::newRow("offset limits by unit") << "up to 10.00 either way in mb, hPa, kPa and mmHg, and up to 1.000 either way in inHg";
        QTest::newRow("a calibration accepted shows nothing") << "goes back to the graph page without a word";
        QTest::newRow("no time limit after Calibrate") << "After <b>Calibrate</b> or <b>Factory reset</b> no such time limit runs";
        QTest::newRow("calibration waits for a reading") << "keeps <b>Calibrate</b> disabled";
        QTest::newRow("unlisted device") << QString::fromUtf8("<i>Other device…</i>");
        QTest::newRow("status lines") << "a status line tells, live, what that connection is doing now";
        QTest::newRow("keyboard") << "Every page can be worked from the keyboard";
        QTest::newRow("connections picture") << "Help_files/connections.png";
        QTest::newRow("Signal K both ways") << "switch on <i>TCP NMEA input</i> with the server's address and port 10110";
    }

    void manualTellsWhatThePagesDo()
    {
        QFETCH(QString, claim);
        QFile file(":/Help/English/DesktopHelp.htm");
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString html = QString::fromUtf8(file.readAll());
        QVERIFY2(html.contains(claim), qPrintable(claim));
        QVERIFY(!html.contains("A message tells whether the device accepted"));
        QVERIFY(!html.contains("up to 10 either way"));
    }

    void documents()
    {
        QFETCH(QString, which);
        QFETCH(int, language);
        QFETCH(QString, mustSay);
        const QString html = document(which, language);
        QVERIFY(html.size() > 2000);
        QVERIFY(html.contains(mustSay));
        QVERIFY(!html.contains(QChar(QChar::ReplacementCharacter)));
        QVERIFY(!html.contains(" small;"));

        // Each picture is in the resources, under the address the rich text will use.
        const QStringList sources = captures(html, QStringLiteral("<img [^>]*src=\"([^\"]*)\""));
        if (which == "help")
            QVERIFY2(sources.size() >= 4, qPrintable(sources.join(' ')));
        QCOMPARE(html.count("<img "), sources.size());
        for (const QString& source : sources) {
            QVERIFY2(source.startsWith("/Help/"), qPrintable(source));
            QVERIFY2(QFile::exists(":" + source), qPrintable(source));
            const QImage image(":" + source);
            QVERIFY2(!image.isNull() && image.width() >= 400, qPrintable(source));
            // Resolved as the page resolves it, against its own address.
            const QUrl resolved = QUrl(QStringLiteral("qrc:/Help_textview")).resolved(QUrl(source));
            QCOMPARE(resolved.scheme(), QStringLiteral("qrc"));
            QVERIFY2(QFile::exists(":" + resolved.path()), qPrintable(resolved.toString()));
        }

        // Links leave the program: none points inside the page or to a file beside it.
        const QStringList links = captures(html, QStringLiteral("href=\"([^\"]*)\""));
        for (const QString& link : links) {
            const QUrl url(link);
            QVERIFY2(!link.startsWith('#') && url.isValid() && !url.isRelative(), qPrintable(link));
            QVERIFY2(url.scheme() == "https" || url.scheme() == "mailto", qPrintable(link));
        }
        QVERIFY(!html.contains(QStringLiteral("name=\"_")));
    }

    void theManualAnswersTheNavigatorsQuestions()
    {
        const QString html = document("help", 0);
        QVERIFY(html.contains(" x-large;"));
        for (const char* topic : {"QNH", "QFE", "mb / 3h", "30m, 3h, 6h, 12h, 1d, 2d, 4d, 8d and 16d", "Zoom", "Pan",
                                  "Reset", "Data on two screens", "Pressure units", "Precision display", "Elevation",
                                  "Pressure display offset", "Theme", "Langage", "Time zone", "Serial NMEA input",
                                  "TCP NMEA input", "UDP NMEA input", "UDP NMEA output", "Factory reset", "CSV",
                                  "GPX", "brinholt.db", "brinholt.ini", "back up", "firewall", "unplugged",
                                  "Storm marks"}) {
            QVERIFY2(html.contains(QLatin1String(topic)), topic);
        }
    }

    void thePhoneDocumentsAreThere()
    {
        QFile english(":/Help/English/Brinholt_help_vQT.htm");
        QFile french(":/Help/French/Brinholt_help_vQT_FRENCH.htm");
        QVERIFY(english.open(QIODevice::ReadOnly));
        QVERIFY(french.open(QIODevice::ReadOnly));
        const QString en = QString::fromUtf8(english.readAll());
        const QString fr = QString::fromUtf8(french.readAll());
        QVERIFY(en.contains("Brinholt on the phone"));
        QVERIFY(fr.contains(QString::fromUtf8("Brinholt sur le téléphone")));
        // Both tell of the storm marks behind the curve.
        QVERIFY(en.contains("pressure-fall warning or its alarm held"));
        QVERIFY(fr.contains(QString::fromUtf8("alerte de baisse de pression ou son alarme a tenu")));
        QVERIFY(!en.contains("<img ") && !fr.contains("<img "));
    }
};

QTEST_MAIN(TestShippedDocuments)
#include "tst_shippeddocuments.moc"

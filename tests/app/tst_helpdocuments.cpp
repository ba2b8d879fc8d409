// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"
#include "tests/support/LogFixture.h"
#include "tests/support/MessageLog.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QResource>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

// The help and the privacy policy as BackEnd reads and rewrites them. The documents are
// made by each test and put into the resources at the paths the application ships them
// under; this program holds none of the shipped ones.
class TestHelpDocuments : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir work;
    QStringList registered;

    // Writes the documents, compiles them into a binary resource and registers it.
    bool install(const QMap<QString, QByteArray>& documents)
    {
        static int serial = 0;
        const QString root = work.filePath(QStringLiteral("docs%1").arg(++serial));
        QString qrc = QStringLiteral("<RCC><qresource prefix=\"/\">\n");
        for (auto it = documents.begin(); it != documents.end(); ++it) {
            const QString path = QDir(root).filePath(it.key());
            if (!QDir().mkpath(QFileInfo(path).absolutePath()))
                return false;
            QFile file(path);
            if (!file.open(QIODevice::WriteOnly) || file.write(it.value()) != it.value().size())
                return false;
            qrc += QStringLiteral("<file>%1</file>\n").arg(it.key());
        }
        qrc += QStringLiteral("</qresource></RCC>\n");
        QFile list(QDir(root).filePath(QStringLiteral("docs.qrc")));
        if (!list.open(QIODevice::WriteOnly) || list.write(qrc.toUtf8()) < 0)
            return false;
        list.close();
        const QString rcc = QDir(root).filePath(QStringLiteral("docs.rcc"));
        QProcess compiler;
        compiler.setWorkingDirectory(root);
        compiler.start(QStringLiteral(BRINHOLT_RCC),
                       {QStringLiteral("-binary"), QStringLiteral("-no-compress"), list.fileName(),
                        QStringLiteral("-o"), rcc});
        if (!compiler.waitForFinished(30000) || compiler.exitCode() != 0) {
            qWarning() << compiler.readAllStandardError();
            return false;
        }
        if (!QResource::registerResource(rcc))
            return false;
        registered << rcc;
        return true;
    }

    static QString help() { return QStringLiteral("Help/English/DesktopHelp.htm"); }
    static QString policyEn() { return QStringLiteral("Help/English/brinholt_privacy_policy_en.html"); }
    static QString policyFr() { return QStringLiteral("Help/French/brinholt_privacy_policy_fr.html"); }

private slots:
    void initTestCase() { QVERIFY(work.isValid()); }

    void cleanup()
    {
        for (const QString& rcc : qAsConst(registered))
            QResource::unregisterResource(rcc);
        registered.clear();
    }

    void missingDocumentsGiveEmptyTextsQuietly()
    {
        LogFixture f;
        MessageLog log;
        QCOMPARE(f.backEnd().getHelpHtml(), QString());
        QCOMPARE(f.backEnd().getPrivacyPolicy(), QString());
        f.backEnd().setSetting("language", 1);
        QCOMPARE(f.backEnd().getPrivacyPolicy(), QString());
        QCOMPARE(log.messages(), QStringList());
    }

    void sizesAreRaisedOneStepEach()
    {
        QVERIFY(install({{help(), "<span style=\"font-size: small; large; x-small;\">a</span>"
                                  "<span style=\"font-size: small;\">b</span><h1 style=\"font-size: large;\">c</h1>"}}));
        LogFixture f;
        const QString html = f.backEnd().getHelpHtml();
        QCOMPARE(html, QStringLiteral("<span style=\"font-size: large; x-large; x-small;\">a</span>"
                                      "<span style=\"font-size: large;\">b</span><h1 style=\"font-size: x-large;\">c</h1>"));
        // Small text must never end as x-large.
        QVERIFY(!html.contains(" small;"));
        QCOMPARE(html.count(" x-large;"), 2);
    }

    void theExampleOfSmallThenLarge()
    {
        QVERIFY(install({{help(), " small; large;"}}));
        LogFixture f;
        QCOMPARE(f.backEnd().getHelpHtml(), QStringLiteral(" large; x-large;"));
    }

    void imagesComeFromTheResources()
    {
        QVERIFY(install({{help(), "<p><img src=\"./Brinholt Help_files/graph.png\" width=\"10\"/>"
                                  "<IMG src=\"./Brinholt Help_files/x.png\"></p>"
                                  "<a href=\"./Brinholt Help_files/a.htm\">a</a>"}}));
        LogFixture f;
        QCOMPARE(f.backEnd().getHelpHtml(),
                 QStringLiteral("<p>&nbsp;<img src=\"/Help/English/graph.png\" width=\"10\"/>"
                                "<IMG src=\"/Help/English/x.png\"></p>"
                                "<a href=\"./Brinholt Help_files/a.htm\">a</a>"));
    }

    void aDocumentWithoutImagesKeepsItsText()
    {
        const QByteArray text = "<html><body><p style=\"margin: 0;\">No pictures here, &amp; no sizes.</p></body></html>";
        QVERIFY(install({{help(), text}, {policyEn(), text}}));
        LogFixture f;
        QCOMPARE(f.backEnd().getHelpHtml(), QString::fromUtf8(text));
        QCOMPARE(f.backEnd().getPrivacyPolicy(), QString::fromUtf8(text));
    }

    void theTextEndsAtAZeroByte()
    {
        QVERIFY(install({{help(), QByteArray("<p>kept</p>\0<p>lost</p>", 23)},
                         {policyEn(), QByteArray("<p>policy</p>\0 small;", 21)}}));
        LogFixture f;
        QCOMPARE(f.backEnd().getHelpHtml(), QStringLiteral("<p>kept</p>"));
        QCOMPARE(f.backEnd().getPrivacyPolicy(), QStringLiteral("<p>policy</p>"));
    }

    void theTextIsReadAsUtf8WhateverItDeclares()
    {
        QVERIFY(install({{help(), "<meta charset=\"windows-1252\"><p>caf\xe9 \xc3\xa9t\xc3\xa9</p>"}}));
        LogFixture f;
        QCOMPARE(f.backEnd().getHelpHtml(),
                 QStringLiteral("<meta charset=\"windows-1252\"><p>caf") + QChar(QChar::ReplacementCharacter)
                         + QStringLiteral(" ") + QString::fromUtf8("\xc3\xa9t\xc3\xa9") + QStringLiteral("</p>"));
    }

    void thePolicyFollowsTheLanguageAtEachCall()
    {
        QVERIFY(install({{policyEn(), "<p style=\"font-size: small;\">Policy</p><img src=\"logo.png\">"},
                         {policyFr(), "<p style=\"font-size: small;\">Politique</p><img src=\"logo.png\">"},
                         {help(), "<p style=\"font-size: small;\">Help</p>"}}));
        LogFixture f;
        QCOMPARE(f.backEnd().getPrivacyPolicy(),
                 QStringLiteral("<p style=\"font-size: medium;\">Policy</p>&nbsp;<img src=\"/Help/English/logo.png\">"));
        f.backEnd().setSetting("language", 1);
        QCOMPARE(f.backEnd().getPrivacyPolicy(),
                 QStringLiteral("<p style=\"font-size: medium;\">Politique</p>&nbsp;<img src=\"/Help/French/logo.png\">"));
        // Any language but English is French; the help is English in every language.
        f.backEnd().setSetting("language", 7);
        QVERIFY(f.backEnd().getPrivacyPolicy().contains("Politique"));
        QCOMPARE(f.backEnd().getHelpHtml(), QStringLiteral("<p style=\"font-size: large;\">Help</p>"));
        f.backEnd().setSetting("language", 0);
        QVERIFY(f.backEnd().getPrivacyPolicy().contains("Policy"));
    }

    void thePolicyRewritesEveryImageSource()
    {
        QVERIFY(install({{policyEn(), "<img src=\"a.png\"><img src=\"./b.png\"> large; small;"}}));
        LogFixture f;
        // Only the policy's own steps: its large text stays large.
        QCOMPARE(f.backEnd().getPrivacyPolicy(),
                 QStringLiteral("&nbsp;<img src=\"/Help/English/a.png\">&nbsp;<img src=\"/Help/English/./b.png\"> large; medium;"));
    }

    void thePhoneAddressesLieUnderTheApplicationFolder()
    {
        LogFixture f;
        const QString app = f.backEnd().getAppPath();
        QCOMPARE(f.backEnd().getHelpBaseUrl(), QUrl::fromLocalFile(app + "help_files"));
        QCOMPARE(f.backEnd().getHelpUrl(), QUrl::fromLocalFile(app + "help_files/English/Brinholt_help_vQT.htm"));
        f.backEnd().setSetting("language", 1);
        QCOMPARE(f.backEnd().getHelpUrl(),
                 QUrl::fromLocalFile(app + "help_files/French/Brinholt_help_vQT_FRENCH.htm"));
        QVERIFY(f.backEnd().getHelpUrl().isLocalFile());
        // Nothing fills that folder.
        QVERIFY(!QFileInfo::exists(f.folder().filePath("help_files")));
    }
};

QTEST_MAIN(TestHelpDocuments)
#include "tst_helpdocuments.moc"

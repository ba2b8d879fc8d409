// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"
#include "tests/support/Columns.h"
#include "tests/support/HostTheme.h"
#include "tests/support/LogFixture.h"
#include "tests/support/PseudoTerminal.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtGui/QFontMetrics>
#include <QtSerialPort/QSerialPortInfo>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>

namespace {

const QString WideSample = QStringLiteral("this is enough wide xxxxxxxxxxx");
const QString ColumnSample = QStringLiteral("this is the size of very big big big big column");

int width(const QString& text)
{
    return QApplication::fontMetrics().horizontalAdvance(text);
}

} // namespace

// What the pages ask of the host through BackEnd: dark mode, text widths, ports, the clock.
class TestHostQueries : public QObject
{
    Q_OBJECT

private slots:
    void horizontalAdvanceIsCappedAtTheSample_data()
    {
        Columns::add<QString, int>("text", "expected");
        QTest::newRow("one letter is its own width") << "x" << width("x");
        QTest::newRow("nothing is nothing") << "" << 0;
        QTest::newRow("a short port is its own width") << "ttyUSB0 " << width("ttyUSB0 ");
        QTest::newRow("the sample itself") << WideSample << width(WideSample);
        QTest::newRow("longer than the sample gives the sample")
            << "ttyUSB0 Quillmere Skerry USB barometer, serial number 000123" << width(WideSample);
    }

    void horizontalAdvanceIsCappedAtTheSample()
    {
        QFETCH(QString, text);
        QFETCH(int, expected);
        LogFixture f;
        QCOMPARE(f.backEnd().getHorizontalAdvance(text), expected);
        QVERIFY(f.backEnd().getHorizontalAdvance(text) <= width(WideSample));
    }

    void oneLetterHasAWidth()
    {
        LogFixture f;
        QVERIFY(f.backEnd().getHorizontalAdvance("x") > 0);
        QVERIFY(f.backEnd().getHorizontalAdvance("x") < f.backEnd().getHorizontalAdvance("xx"));
    }

    void columnWidthIsTheSampleInTheApplicationFont()
    {
        LogFixture f;
        QCOMPARE(f.backEnd().getColWidth(), width(ColumnSample));
        // It follows the application's font.
        const QFont original = QApplication::font();
        QFont larger = original;
        larger.setPointSizeF(original.pointSizeF() * 2);
        const int before = f.backEnd().getColWidth();
        QApplication::setFont(larger);
        QCOMPARE(f.backEnd().getColWidth(), width(ColumnSample));
        QVERIFY(f.backEnd().getColWidth() > before);
        QApplication::setFont(original);
    }

    void darkModeFromTheWindowText_data()
    {
        Columns::add<QColor, bool>("text", "dark");
        QTest::newRow("grey 128 is light") << QColor(128, 128, 128) << false;
        QTest::newRow("grey 129 is dark") << QColor(129, 129, 129) << true;
        QTest::newRow("white text is dark") << QColor(Qt::white) << true;
        QTest::newRow("black text is light") << QColor(Qt::black) << false;
        QTest::newRow("yellow text is light") << QColor(Qt::yellow) << false;
        QTest::newRow("one low component is light") << QColor(200, 128, 200) << false;
    }

    void darkModeFromTheWindowText()
    {
        QFETCH(QColor, text);
        QFETCH(bool, dark);
        HostTheme host;
        host.setWindowText(text);
        LogFixture f;
        QCOMPARE(f.backEnd().isSystemDarkMode(), dark);
    }

    void noPaletteIsLight()
    {
        HostTheme host;
        host.setNoPalette();
        LogFixture f;
        QVERIFY(!f.backEnd().isSystemDarkMode());
    }

    void portEntry_data()
    {
        Columns::add<QString, QString, QString>("name", "description", "entry");
        QTest::newRow("empty description ends in the blank") << "ttyUSB0" << "" << "ttyUSB0 ";
        QTest::newRow("name, blank, description") << "ttyACM0" << "Skerry barometer" << "ttyACM0 Skerry barometer";
        QTest::newRow("a Windows port") << "COM4" << "" << "COM4 ";
    }

    void portEntry()
    {
        QFETCH(QString, name);
        QFETCH(QString, description);
        QFETCH(QString, entry);
        QCOMPARE(BackEnd::serialPortEntry(name, description), entry);
        // The receiver takes the name back out of the stored entry by its first blank.
        QCOMPARE(entry.split(' ', Qt::SkipEmptyParts).first(), name);
    }

    void portListIsEveryAvailablePortInOrder()
    {
        LogFixture f;
        // Built here by hand, not by the helper the list is made with.
        QStringList expected;
        const auto ports = QSerialPortInfo::availablePorts();
        for (const QSerialPortInfo& info : ports)
            expected << info.portName() + QLatin1Char(' ') + info.description();
        QCOMPARE(f.backEnd().getSerialPorts(), expected);
        for (const QString& entry : f.backEnd().getSerialPorts())
            QVERIFY2(entry.contains(' '), qPrintable(entry));
    }

    // The list a test controls shows what the system's does on any machine, with or
    // without ports: every port, in order, each as its name, a blank and its description.
    void portListIsEveryListedPortInOrder()
    {
        LogFixture f;
        f.backEnd().setPortLister([] {
            return BackEnd::PortList{{QStringLiteral("ttyUSB7"), QStringLiteral("Simulated Skerry")},
                                     {QStringLiteral("ttyACM0"), QString()},
                                     {QStringLiteral("ttyS0"), QStringLiteral("16550A")}};
        });
        const QStringList expected = {QStringLiteral("ttyUSB7 Simulated Skerry"), QStringLiteral("ttyACM0 "),
                                      QStringLiteral("ttyS0 16550A")};
        QCOMPARE(f.backEnd().getSerialPorts(), expected);
        f.backEnd().setPortLister([] { return BackEnd::PortList(); });
        QCOMPARE(f.backEnd().getSerialPorts(), QStringList());
    }

    // What the Connections page asks of a stored port that the list lacks.
    void characterDevice_data()
    {
        Columns::add<QString, bool>("what", "device");
        QTest::newRow("the null device") << "/dev/null" << true;
        QTest::newRow("a bare name is looked for in /dev") << "null" << true;
        QTest::newRow("a pseudo-terminal") << "pty" << true;
        QTest::newRow("a link to a pseudo-terminal") << "link to pty" << true;
        QTest::newRow("a link to a link to a pseudo-terminal") << "link to link" << true;
        QTest::newRow("a regular file") << "file" << false;
        QTest::newRow("a link to a regular file") << "link to file" << false;
        QTest::newRow("a folder") << "folder" << false;
        QTest::newRow("a missing path") << "missing" << false;
        QTest::newRow("a link to nothing") << "dangling link" << false;
        QTest::newRow("a bare name missing from /dev") << "ttyNOSUCHPORT" << false;
        QTest::newRow("no name at all") << "" << false;
    }

    void characterDevice()
    {
        QFETCH(QString, what);
        QFETCH(bool, device);
        LogFixture f;
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        PseudoTerminal pty;
        QVERIFY(pty.open());
        const QString file = dir.filePath(QStringLiteral("file"));
        {
            QFile regular(file);
            QVERIFY(regular.open(QIODevice::WriteOnly));
            regular.write("$WIXDR\r\n");
        }
        QVERIFY(QFile::link(pty.terminalPath(), dir.filePath(QStringLiteral("link to pty"))));
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("link to pty")), dir.filePath(QStringLiteral("link to link"))));
        QVERIFY(QFile::link(file, dir.filePath(QStringLiteral("link to file"))));
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("missing")), dir.filePath(QStringLiteral("dangling link"))));
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("folder")));

        // The things made here are named by their row; any other name is given as it stands.
        const QStringList made = {QStringLiteral("file"), QStringLiteral("link to pty"), QStringLiteral("link to link"),
                                  QStringLiteral("link to file"), QStringLiteral("folder"),
                                  QStringLiteral("dangling link"), QStringLiteral("missing")};
        QString path = what;
        if (what == QLatin1String("pty"))
            path = pty.terminalPath();
        else if (made.contains(what))
            path = dir.filePath(what);
        QCOMPARE(f.backEnd().isCharacterDevice(path), device);
    }

    void fixedDesktopAnswers()
    {
        LogFixture f;
        BackEnd& b = f.backEnd();
        QVERIFY(!b.isPhone());
        QCOMPARE(b.getVersion(), QStringLiteral("3.0.0"));
        QVERIFY(b.checkPermissionPart1() && b.checkPermissionPart2() && b.checkPermissionPart3());
        QVERIFY(b.askPermissionPart1() && b.askPermissionPart2() && b.askPermissionPart3());
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        const qint64 now = b.getCurrentTime();
        QVERIFY(now >= before && now <= QDateTime::currentSecsSinceEpoch());
    }

    void permissionAlreadyAskedReadsItsKey()
    {
        LogFixture f;
        BackEnd& b = f.backEnd();
        QVERIFY(!b.androidPermissionAlreadyAsked1());
        b.setSetting("androidPermissionAsked1", 1);
        b.setSetting("androidPermissionAsked2", 2);
        b.setSetting("androidPermissionAsked3", 1);
        QVERIFY(b.androidPermissionAlreadyAsked1());
        QVERIFY(!b.androidPermissionAlreadyAsked2());
        QVERIFY(b.androidPermissionAlreadyAsked3());
    }
};

QTEST_MAIN(TestHostQueries)
#include "tst_hostqueries.moc"

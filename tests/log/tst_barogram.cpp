// SPDX-License-Identifier: GPL-3.0-or-later
#include "BuoyRecord.h"
#include "ReaderFixture.h"

#include "app/BackEnd.h"
#include "log/Barogram.h"
#include "log/DataSource.h"
#include "tests/support/Columns.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTranslator>
#include <QtGui/QImage>
#include <QtTest/QtTest>

#include <algorithm>
#include <cmath>
#include <functional>

// The barogram: a picture whose curve must match the log it was drawn from.
class TestBarogram : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Now = ReaderFixture::ExampleTime;

    // Thirty minutes of BARO30M every two seconds, with a four-minute pause in the middle
    // and a pressure that climbs 3 hPa over the span.
    static QVector<LogRow> halfHourWithAPause()
    {
        QVector<LogRow> rows;
        for (qint64 age = 0; age <= 1798; age += 2) {
            if (age > 800 && age < 1040)
                continue;
            LogRow row;
            row.time = Now - age;
            row.pre = 1010.0 + 3.0 * (1800 - age) / 1800.0;
            row.lon = age == 0 ? -4.5 : 0.0;
            row.lat = age == 0 ? 48.25 : 0.0;
            rows.append(row);
        }
        return rows;
    }

    // Whether a pixel within `radius` pixels of `at` is of a colour that `wanted` accepts.
    static bool anyNear(const QImage& image, QPointF at, int radius, const std::function<bool(const QColor&)>& wanted)
    {
        const QPoint centre = at.toPoint();
        for (int dy = -radius; dy <= radius; ++dy) {
            for (int dx = -radius; dx <= radius; ++dx) {
                const QPoint p = centre + QPoint(dx, dy);
                if (image.rect().contains(p) && wanted(image.pixelColor(p)))
                    return true;
            }
        }
        return false;
    }

    // Whether the curve's colour is within `radius` pixels of `at`.
    static bool curveNear(const QImage& image, QPointF at, int radius)
    {
        return anyNear(image, at, radius, [](const QColor& c) {
            return std::abs(c.red() - Barogram::CurveColour.red()) < 40 && c.green() < 110 && c.blue() < 110;
        });
    }

    static bool within(const QColor& c, const QColor& colour, int tolerance)
    {
        return std::abs(c.red() - colour.red()) <= tolerance && std::abs(c.green() - colour.green()) <= tolerance
                && std::abs(c.blue() - colour.blue()) <= tolerance;
    }

    // `front` laid over the opaque `back`.
    static QColor over(const QColor& front, const QColor& back)
    {
        const double a = front.alphaF();
        return QColor::fromRgbF(a * front.redF() + (1 - a) * back.redF(), a * front.greenF() + (1 - a) * back.greenF(),
                                a * front.blueF() + (1 - a) * back.blueF());
    }

private slots:
    void pngCurveMatchesTheRows()
    {
        ReaderFixture fx;
        fx.setPressure(1013.0);
        const QVector<LogRow> rows = halfHourWithAPause();
        fx.insert(0, rows);
        QTemporaryDir out;
        const QString file = out.filePath(QStringLiteral("baro.png"));
        const Barogram barogram(fx.log(), 0);
        QVERIFY(barogram.save(file));
        // Kept beside the page screenshots, for a person to look at.
        QDir().mkpath(QStringLiteral(BRINHOLT_BINARY_DIR "/screenshots"));
        QFile::remove(QStringLiteral(BRINHOLT_BINARY_DIR "/screenshots/barogram.png"));
        QFile::copy(file, QStringLiteral(BRINHOLT_BINARY_DIR "/screenshots/barogram.png"));

        QImage image(file);
        QCOMPARE(image.size(), Barogram::DefaultSize);
        const QRectF plot = Barogram::plotArea(QSizeF(image.size()));
        QCOMPARE(barogram.curve().size(), 2);
        // Every tenth row, from the row itself: minutes before the newest, hPa rounded to
        // hundredths, as the graph page draws it.
        int sampled = 0;
        for (int i = 0; i < rows.size(); i += 10) {
            const QPointF chartPoint((rows.at(i).time - Now) / 60.0, std::round(rows.at(i).pre * 100.0) / 100.0);
            const QPointF pixel = barogram.toPage(chartPoint, plot);
            QVERIFY2(plot.adjusted(-1, -1, 1, 1).contains(pixel), qPrintable(QString::number(i)));
            QVERIFY2(curveNear(image, pixel, 2), qPrintable(QStringLiteral("row %1 at %2,%3").arg(i).arg(pixel.x()).arg(pixel.y())));
            ++sampled;
        }
        QVERIFY(sampled > 70);
        // The pause is a break: nothing is drawn halfway through it.
        const double mid = 1010.0 + 3.0 * (1800 - 920) / 1800.0;
        QVERIFY(!curveNear(image, barogram.toPage(QPointF(-920 / 60.0, mid), plot), 3));
        // The newest row is at the right edge, the span's start at the left.
        QVERIFY(std::fabs(barogram.toPage(QPointF(0.0, mid), plot).x() - plot.right()) < 1e-9);
        QVERIFY(std::fabs(barogram.toPage(QPointF(-30.0, mid), plot).x() - plot.left()) < 1e-9);
    }

    void axesFollowTheChosenUnit()
    {
        ReaderFixture fx;
        fx.setPressure(1013.0);
        fx.setSetting(QStringLiteral("unitPre"), 3);
        fx.insert(0, halfHourWithAPause());
        const Barogram barogram(fx.log(), 0);
        // 1010 to 1013 hPa in inches, rounded to the hundredths the chart shows.
        QVERIFY(barogram.lowest() <= 29.83 && barogram.lowest() > 29.7);
        QVERIFY(barogram.highest() >= 29.91 && barogram.highest() < 30.0);
    }

    // The storm of 24-25 February on the sixteen-day barogram: each marked period shaded
    // in its colour behind the curve, calm days left white.
    void stormsAreShadedBehindTheCurve()
    {
        BuoyRecord record;
        QVERIFY(record.load(BuoyRecord::firstHalfOf2012()));
        ReaderFixture fx;
        fx.replay(8, BuoyRecord::utc(2, 26, 12), [&](qint64 time) { return record.at(time); });
        const Barogram barogram(fx.log(), 8);
        QTemporaryDir out;
        const QString file = out.filePath(QStringLiteral("storms.png"));
        QVERIFY(barogram.save(file));
        QFile::remove(QStringLiteral(BRINHOLT_BINARY_DIR "/screenshots/barogram-storms.png"));
        QFile::copy(file, QStringLiteral(BRINHOLT_BINARY_DIR "/screenshots/barogram-storms.png"));
        const QImage image(file);
        const QRectF plot = Barogram::plotArea(QSizeF(image.size()));
        const auto column = [&](qint64 time) {
            return qRound(barogram.toPage(QPointF((time - BuoyRecord::utc(2, 26, 12)) / 86400.0, 0.0), plot).x());
        };
        // Of the pixels down the plot at `x`, the share within 4 of `colour`.
        const auto share = [&](int x, const QColor& colour) {
            int near = 0;
            int all = 0;
            for (int y = qCeil(plot.top()) + 2; y < plot.bottom() - 2; ++y, ++all) {
                if (within(image.pixelColor(x, y), colour, 4))
                    ++near;
            }
            return double(near) / all;
        };
        const auto onPaper = [](const QColor& colour) {
            QColor shade = colour;
            shade.setAlphaF(Barogram::StormOpacity);
            return over(shade, Qt::white);
        };

        QSet<int> levels;
        for (const StormPeriod& period : barogram.stormPeriods()) {
            if (period.end - period.start < 7200)
                continue;
            const QColor colour = period.level == PressureWarning::Alarm ? Barogram::AlarmColour : Barogram::WarningColour;
            const int x = column((period.start + period.end) / 2);
            QVERIFY2(share(x, onPaper(colour)) > 0.8, qPrintable(QString::number(share(x, onPaper(colour)))));
            levels << period.level;
        }
        QCOMPARE(levels, (QSet<int>{PressureWarning::Warning, PressureWarning::Alarm}));
        QVERIFY(std::any_of(barogram.stormPeriods().cbegin(), barogram.stormPeriods().cend(), [](const StormPeriod& p) {
            return p.level == PressureWarning::Alarm && p.start < BuoyRecord::utc(2, 26) && p.end > BuoyRecord::utc(2, 24);
        }));
        // 15 February is calm.
        QVERIFY(share(column(BuoyRecord::utc(2, 15, 12)), Qt::white) > 0.8);

        // The curve is drawn over the shades in its own colour, not through them.
        int covered = 0;
        for (const StormPeriod& period : barogram.stormPeriods()) {
            for (qint64 time = period.start; time < period.end; time += 768) {
                const std::optional<double> pressure = record.at(time);
                if (!pressure)
                    continue;
                const QPointF at = barogram.toPage(QPointF((time - BuoyRecord::utc(2, 26, 12)) / 86400.0,
                                                           std::round(*pressure * 100.0) / 100.0), plot);
                QVERIFY2(anyNear(image, at, 3, [](const QColor& c) { return within(c, Barogram::CurveColour, 3); }),
                         qPrintable(QString::number(time)));
                ++covered;
            }
        }
        QVERIFY(covered > 20);
    }

    void stormKeyInBothLanguages()
    {
        QCOMPARE(Barogram::stormLabel(PressureWarning::Warning), QStringLiteral("Pressure-fall warning"));
        QCOMPARE(Barogram::stormLabel(PressureWarning::Alarm), QStringLiteral("Pressure-fall alarm"));
        QTranslator french;
        QVERIFY(french.load(QStringLiteral(BRINHOLT_BINARY_DIR "/Brinholt_fr_FR.qm")));
        QCoreApplication::installTranslator(&french);
        const QString warning = Barogram::stormLabel(PressureWarning::Warning);
        const QString alarm = Barogram::stormLabel(PressureWarning::Alarm);
        QCoreApplication::removeTranslator(&french);
        QCOMPARE(warning, QStringLiteral("Alerte de baisse de pression"));
        QCOMPARE(alarm, QStringLiteral("Alarme de baisse de pression"));
    }

    void pdfIsOneA4LandscapePage()
    {
        ReaderFixture fx;
        fx.setPressure(1013.0);
        fx.insert(0, halfHourWithAPause());
        QTemporaryDir out;
        const QString file = out.filePath(QStringLiteral("baro.pdf"));
        QVERIFY(Barogram(fx.log(), 0).save(file));
        QFile pdf(file);
        QVERIFY(pdf.open(QIODevice::ReadOnly));
        const QByteArray bytes = pdf.readAll();
        QVERIFY(bytes.startsWith("%PDF-"));
        // A4 is 595 by 842 points; landscape lays it on its side.
        const int at = bytes.indexOf("/MediaBox [");
        QVERIFY(at >= 0);
        const QList<QByteArray> box = bytes.mid(at + 11, bytes.indexOf(']', at) - at - 11).simplified().split(' ');
        QCOMPARE(box.size(), 4);
        QCOMPARE(qRound(box.at(2).toDouble()), 842);
        QCOMPARE(qRound(box.at(3).toDouble()), 595);
        QCOMPARE(bytes.count("/Type /Page\n") + bytes.count("/Type /Page\r") + bytes.count("/Type /Page "), 1);
    }

    void emptyTableStillGivesAPicture()
    {
        ReaderFixture fx;
        QTemporaryDir out;
        const Barogram barogram(fx.log(), 8);
        QVERIFY(barogram.isEmpty());
        QVERIFY(barogram.save(out.filePath(QStringLiteral("empty.png"))));
        QVERIFY(!QImage(out.filePath(QStringLiteral("empty.png"))).isNull());
    }

    void titleNamesTheSpan_data()
    {
        Columns::add<int, QString>("table", "title");
        QTest::newRow("30 minutes") << 0 << QStringLiteral("Barogram of 30 minutes");
        QTest::newRow("1 day") << 4 << QStringLiteral("Barogram of 1 day");
        QTest::newRow("16 days") << 8 << QStringLiteral("Barogram of 16 days");
    }

    void titleNamesTheSpan()
    {
        QFETCH(int, table);
        QFETCH(QString, title);
        ReaderFixture fx;
        QCOMPARE(Barogram(fx.log(), table).title(), title);
    }

    void unknownExtensionOrUnwritableFileFails()
    {
        ReaderFixture fx;
        const Barogram barogram(fx.log(), 0);
        QTemporaryDir out;
        QVERIFY(!barogram.save(out.filePath(QStringLiteral("baro.jpg"))));
        QVERIFY(!barogram.save(out.filePath(QStringLiteral("baro"))));
        QVERIFY(!barogram.save(QStringLiteral("/proc/brinholt-none/baro.png")));
        QVERIFY(!barogram.save(QStringLiteral("/proc/brinholt-none/baro.pdf")));
    }

    // The barogram of another span than the one on show must not move the window's chart.
    void drawingLeavesThePagesChartAlone()
    {
        ReaderFixture fx;
        fx.setPressure(1013.0);
        fx.insert(0, halfHourWithAPause());
        int emissions = 0;
        QObject context;
        QObject::connect(&fx.log(), &DataSource::chartUpdated, &context, [&] { ++emissions; });
        const Barogram barogram(fx.log(), 0);
        QCOMPARE(emissions, 0);
        QVERIFY(!barogram.isEmpty());
        QCOMPARE(barogram.curve().size(), 2);
    }

    // Without the last fix the picture says nothing of where the boat is.
    void theLastFixCanBeLeftOut()
    {
        ReaderFixture fx;
        fx.setPressure(1013.0);
        fx.insert(0, halfHourWithAPause());
        QBuffer with;
        QBuffer without;
        QVERIFY(with.open(QIODevice::WriteOnly) && without.open(QIODevice::WriteOnly));
        QVERIFY(Barogram(fx.log(), 0).writePng(with));
        QVERIFY(Barogram(fx.log(), 0, false).writePng(without));
        const QImage shown = QImage::fromData(with.data(), "PNG");
        const QImage hidden = QImage::fromData(without.data(), "PNG");
        QCOMPARE(shown.size(), Barogram::DefaultSize);
        QCOMPARE(hidden.size(), Barogram::DefaultSize);
        // The header's line of facts is the only difference: the plot is the same.
        const QRectF plot = Barogram::plotArea(QSizeF(Barogram::DefaultSize));
        QCOMPARE(shown.copy(plot.toRect()), hidden.copy(plot.toRect()));
        QVERIFY(shown.copy(0, 0, shown.width(), int(plot.top())) != hidden.copy(0, 0, hidden.width(), int(plot.top())));

        QBuffer pdf;
        QVERIFY(pdf.open(QIODevice::WriteOnly));
        QVERIFY(Barogram(fx.log(), 0).writePdf(pdf));
        QVERIFY(pdf.data().startsWith("%PDF"));
    }

    void lastFixIsTheNewestPositionOfTheTable()
    {
        ReaderFixture fx;
        fx.insert(0, halfHourWithAPause());
        QCOMPARE(fx.log().lastFix(0), QPointF(-4.5, 48.25));
        QCOMPARE(fx.log().lastFix(1), QPointF());
    }

    void exportBarogramWritesAndShowsTheFile()
    {
        ReaderFixture fx;
        fx.setPressure(1013.0);
        fx.insert(0, halfHourWithAPause());
        // With no name: a PDF in the data folder, shown as the exports are.
        QVERIFY(fx.log().exportBarogram(0));
        QVERIFY(QFile::exists(fx.path(QStringLiteral("barogram_BARO30M.pdf"))));
        QCOMPARE(fx.viewer.urls.size(), 1);
        QVERIFY(fx.viewer.urls.at(0).toString().endsWith(QStringLiteral("/barogram_BARO30M.pdf")));
        QTemporaryDir out;
        const QString png = out.filePath(QStringLiteral("chosen.png"));
        QVERIFY(fx.log().exportBarogram(0, QStringLiteral("file://") + png));
        QVERIFY(!QImage(png).isNull());
        QVERIFY(!fx.log().exportBarogram(9));
        QVERIFY(!fx.log().exportBarogram(0, out.filePath(QStringLiteral("chosen.txt"))));
        QCOMPARE(fx.viewer.urls.size(), 2);
    }
};

QTEST_MAIN(TestBarogram)
#include "tst_barogram.moc"

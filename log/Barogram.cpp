// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/Barogram.h"

#include "log/DataSource.h"
#include "log/LogHost.h"
#include "util/Util.h"

#include <QtCharts/QLineSeries>
#include <QtCore/QDateTime>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtGui/QFont>
#include <QtGui/QImage>
#include <QtGui/QPageLayout>
#include <QtGui/QPageSize>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QPdfWriter>

#include <cmath>

const QColor Barogram::CurveColour(0xC6, 0x28, 0x28);
// Amber 600 and red 700 of the Material palette, as the warning strip shows them.
const QColor Barogram::WarningColour(0xFF, 0xB3, 0x00);
const QColor Barogram::AlarmColour(0xD3, 0x2F, 0x2F);

namespace {
const QColor Ink(0x21, 0x21, 0x21);
const QColor Grid(0xBD, 0xBD, 0xBD);

// The table's own span: its retention in the units of its x axis.
constexpr double Spans[DataSource::TableCount] = {30, 3, 6, 12, 24, 48, 4, 8, 16};
// Steps between labelled grid lines, in the same units.
constexpr double Steps[DataSource::TableCount] = {5, 0.5, 1, 2, 3, 6, 1, 1, 2};

double secondsPerUnit(int table)
{
    return table == 0 ? 60.0 : table <= 5 ? 3600.0 : 86400.0;
}
}

Barogram::Barogram(DataSource& log, int tableNb)
    : log(log)
    , table(qBound(0, tableNb, DataSource::TableCount - 1))
{
    QtCharts::QLineSeries reader;
    const QMetaObject::Connection connection = QObject::connect(
            &log, &DataSource::chartUpdated, [&](QVariant chartNow, double chartMin, double chartMax, int count) {
                now = chartNow.toLongLong();
                min = chartMin;
                max = chartMax;
                // Inside the chart feed's own signal, as the graph page fetches its series.
                for (int i = 0; i < count; ++i) {
                    log.update(&reader, i);
                    series.append(reader.pointsVector());
                }
            });
    log.updateChart(table);
    QObject::disconnect(connection);
    storms = log.getStorms()->periods();

    lastFix = log.lastFix(table);
    const QString trend = log.getTrend3h();
    if (trend != QStringLiteral("notOK"))
        tendency = QString(trend).remove(QRegularExpression(QStringLiteral("<[^>]*>")));
    LogHost* host = LogHost::installed();
    unit = host ? host->getPressureUnit() : QStringLiteral("mb");
}

double Barogram::span() const
{
    return Spans[table];
}

QString Barogram::title() const
{
    static const char* const names[DataSource::TableCount] = {
        QT_TR_NOOP("30 minutes"), QT_TR_NOOP("3 hours"), QT_TR_NOOP("6 hours"),
        QT_TR_NOOP("12 hours"),   QT_TR_NOOP("1 day"),   QT_TR_NOOP("2 days"),
        QT_TR_NOOP("4 days"),     QT_TR_NOOP("8 days"),  QT_TR_NOOP("16 days")};
    return tr("Barogram of %1").arg(tr(names[table]));
}

QRectF Barogram::plotArea(const QSizeF& page)
{
    const double margin = page.width() * 0.06;
    const double top = page.height() * 0.2;
    return QRectF(margin * 1.4, top, page.width() - margin * 2.2, page.height() - top - margin * 1.1);
}

QPointF Barogram::toPage(const QPointF& chartPoint, const QRectF& plot) const
{
    const double x = plot.right() + chartPoint.x() / span() * plot.width();
    const double range = isEmpty() ? 1.0 : max - min;
    const double y = plot.bottom() - (chartPoint.y() - (isEmpty() ? 0.0 : min)) / range * plot.height();
    return QPointF(x, y);
}

void Barogram::paint(QPainter& painter, const QSizeF& page) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(QRectF(QPointF(0, 0), page), Qt::white);
    const QRectF plot = plotArea(page);
    paintHeader(painter, page);
    paintStorms(painter, plot, page);
    paintAxes(painter, plot);
    paintCurve(painter, plot);
    painter.restore();
}

void Barogram::paintHeader(QPainter& painter, const QSizeF& page) const
{
    const double unitHeight = page.height() / 40.0;
    QFont font = painter.font();
    font.setPixelSize(qRound(unitHeight * 1.5));
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Ink);
    const double left = plotArea(page).left();
    double line = unitHeight * 2.2;
    painter.drawText(QPointF(left, line), title());

    font.setBold(false);
    font.setPixelSize(qRound(unitHeight));
    painter.setFont(font);
    line += unitHeight * 1.6;
    const QDateTime end = QDateTime::fromSecsSinceEpoch(now ? now : QDateTime::currentSecsSinceEpoch(), Qt::UTC);
    const QDateTime start = end.addSecs(qint64(-span() * secondsPerUnit(table)));
    painter.drawText(QPointF(left, line),
                     tr("From %1 to %2").arg(Util::formatDateTimeLong(start), Util::formatDateTimeLong(end)));
    line += unitHeight * 1.4;
    QStringList facts;
    if (isEmpty())
        facts << tr("No readings in this span");
    else
        facts << tr("Lowest %1 %3, highest %2 %3").arg(min, 0, 'f', 2).arg(max, 0, 'f', 2).arg(unit);
    if (!tendency.isEmpty())
        facts << tr("Tendency %1").arg(tendency);
    if (!lastFix.isNull())
        facts << tr("Last fix %1").arg(Util::formatPosition(lastFix.x(), lastFix.y()));
    painter.drawText(QPointF(left, line), facts.join(QStringLiteral("   ")));
}

QString Barogram::timeLabel(double x) const
{
    const QDateTime at = QDateTime::fromSecsSinceEpoch(now + qint64(std::llround(x * secondsPerUnit(table))), Qt::UTC);
    const QDateTime local = Util::convertDateTime(at);
    return table >= 6 ? local.toString(Util::convertDateFormat(QStringLiteral("dd/MM")))
                      : local.toString(QStringLiteral("HH:mm"));
}

void Barogram::paintAxes(QPainter& painter, const QRectF& plot) const
{
    QFont font = painter.font();
    font.setPixelSize(qMax(8, qRound(plot.height() / 30.0)));
    painter.setFont(font);
    const QFontMetricsF metrics(font);

    painter.setPen(QPen(Grid, 1.0));
    for (double x = 0.0; x >= -span() - 1e-9; x -= Steps[table]) {
        const double px = toPage(QPointF(x, 0.0), plot).x();
        painter.setPen(QPen(Grid, 1.0));
        painter.drawLine(QPointF(px, plot.top()), QPointF(px, plot.bottom()));
        painter.setPen(Ink);
        const QString label = timeLabel(x);
        painter.drawText(QPointF(px - metrics.horizontalAdvance(label) / 2.0, plot.bottom() + metrics.height() * 1.2),
                         label);
    }

    if (!isEmpty()) {
        // Round steps, so that the labels read as a barograph's paper does.
        static const double niceSteps[] = {0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 50};
        double step = niceSteps[0];
        for (double candidate : niceSteps) {
            step = candidate;
            if ((max - min) / candidate <= 10.0)
                break;
        }
        const int decimals = step < 0.1 ? 2 : step < 1.0 ? 1 : 0;
        for (double value = std::ceil(min / step - 1e-9) * step; value <= max + 1e-9; value += step) {
            const double py = toPage(QPointF(0.0, value), plot).y();
            painter.setPen(QPen(Grid, 1.0));
            painter.drawLine(QPointF(plot.left(), py), QPointF(plot.right(), py));
            painter.setPen(Ink);
            const QString label = QString::number(value, 'f', decimals);
            painter.drawText(QPointF(plot.left() - metrics.horizontalAdvance(label) - metrics.height() * 0.4,
                                     py + metrics.ascent() / 2.5),
                             label);
        }
        painter.drawText(QPointF(plot.left() - metrics.height() * 0.4 - metrics.horizontalAdvance(unit),
                                 plot.top() - metrics.height() * 0.6),
                         unit);
    }
    painter.setPen(QPen(Ink, 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(plot);
}

QString Barogram::stormLabel(PressureWarning::Level level)
{
    return level == PressureWarning::Alarm ? tr("Pressure-fall alarm") : tr("Pressure-fall warning");
}

void Barogram::paintStorms(QPainter& painter, const QRectF& plot, const QSizeF& page) const
{
    if (storms.isEmpty())
        return;
    const auto shade = [](PressureWarning::Level level) {
        QColor colour = level == PressureWarning::Alarm ? AlarmColour : WarningColour;
        colour.setAlphaF(StormOpacity);
        return colour;
    };
    const double unitSeconds = secondsPerUnit(table);
    for (const StormPeriod& period : storms) {
        const double left = toPage(QPointF((period.start - now) / unitSeconds, 0.0), plot).x();
        const double right = toPage(QPointF((period.end - now) / unitSeconds, 0.0), plot).x();
        painter.fillRect(QRectF(QPointF(left, plot.top()), QPointF(right, plot.bottom())).intersected(plot),
                         shade(period.level));
    }

    // The key, right-aligned on the title's line.
    QFont font = painter.font();
    font.setBold(false);
    font.setPixelSize(qMax(8, qRound(page.height() / 40.0)));
    painter.setFont(font);
    const QFontMetricsF metrics(font);
    const double swatch = metrics.ascent();
    const double baseline = page.height() / 40.0 * 2.2;
    double right = plot.right();
    for (PressureWarning::Level level : {PressureWarning::Alarm, PressureWarning::Warning}) {
        const QString label = stormLabel(level);
        right -= metrics.horizontalAdvance(label);
        painter.setPen(Ink);
        painter.drawText(QPointF(right, baseline), label);
        right -= swatch * 1.4;
        painter.fillRect(QRectF(right, baseline - swatch, swatch, swatch), shade(level));
        right -= swatch * 1.5;
    }
}

void Barogram::paintCurve(QPainter& painter, const QRectF& plot) const
{
    painter.save();
    painter.setClipRect(plot.adjusted(-2, -2, 2, 2));
    painter.setPen(QPen(CurveColour, qMax(2.0, plot.height() / 250.0), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    // One path per stretch, so that a pause in the log stays a break in the line.
    for (const QVector<QPointF>& stretch : series) {
        if (stretch.isEmpty())
            continue;
        QPainterPath path(toPage(stretch.first(), plot));
        for (const QPointF& point : stretch)
            path.lineTo(toPage(point, plot));
        if (stretch.size() == 1)
            painter.drawPoint(toPage(stretch.first(), plot));
        else
            painter.drawPath(path);
    }
    painter.restore();
}

bool Barogram::savePng(const QString& fileName, const QSize& size) const
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    paint(painter, QSizeF(size));
    painter.end();
    return image.save(fileName, "PNG");
}

bool Barogram::savePdf(const QString& fileName) const
{
    QPdfWriter writer(fileName);
    if (!writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape, QMarginsF(10, 10, 10, 10),
                                          QPageLayout::Millimeter)))
        return false;
    writer.setResolution(150);
    writer.setTitle(title());
    writer.setCreator(QStringLiteral("Brinholt"));
    QPainter painter;
    if (!painter.begin(&writer))
        return false;
    const QRect page = painter.viewport();
    paint(painter, QSizeF(page.size()));
    return painter.end();
}

bool Barogram::save(const QString& fileName) const
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QStringLiteral("png"))
        return savePng(fileName);
    if (suffix == QStringLiteral("pdf"))
        return savePdf(fileName);
    return false;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtGui/QColor>

#include "log/StormMarks.h"

class DataSource;
class QPainter;

// A picture of one log table as a sailor pins it in the logbook: the curve with its
// breaks, time and pressure axes in the chosen unit, the lowest and highest value, the
// three-hour tendency, and a title with the span, the dates and the last fix. The curve
// is the graph page's own, read through the same chart feed.
class Barogram
{
    Q_DECLARE_TR_FUNCTIONS(Barogram)

public:
    Barogram(DataSource& log, int tableNb);

    // By the file's extension, .png or .pdf (A4 landscape); false for any other
    // extension or a file that cannot be written.
    bool save(const QString& fileName) const;
    bool savePng(const QString& fileName, const QSize& size = DefaultSize) const;
    bool savePdf(const QString& fileName) const;

    void paint(QPainter& painter, const QSizeF& page) const;
    // Where the curve is drawn on a page of that size, and where a point of the chart feed
    // (x in the table's units before the newest row, y in the chosen unit) lands in it.
    static QRectF plotArea(const QSizeF& page);
    QPointF toPage(const QPointF& chartPoint, const QRectF& plot) const;

    bool isEmpty() const { return max < 0.0; }
    const QList<QVector<QPointF>>& curve() const { return series; }
    double lowest() const { return min; }
    double highest() const { return max; }
    // The span the x axis covers, in the table's x units.
    double span() const;
    QString title() const;
    // Where the warning or the alarm held, shaded behind the curve.
    const QVector<StormPeriod>& stormPeriods() const { return storms; }
    // What the key says of a level's shade, in the current language.
    static QString stormLabel(PressureWarning::Level level);

    static constexpr QSize DefaultSize{1600, 1000};
    static const QColor CurveColour;
    // The warning strip's colours, laid thin enough over the paper for the curve to read.
    static const QColor WarningColour;
    static const QColor AlarmColour;
    static constexpr double StormOpacity = 0.3;

private:
    void paintHeader(QPainter& painter, const QSizeF& page) const;
    void paintAxes(QPainter& painter, const QRectF& plot) const;
    void paintCurve(QPainter& painter, const QRectF& plot) const;
    void paintStorms(QPainter& painter, const QRectF& plot, const QSizeF& page) const;
    QString timeLabel(double x) const;

    DataSource& log;
    int table = 0;
    qint64 now = 0;
    double min = 0.0;
    double max = -1.0;
    QList<QVector<QPointF>> series;
    QVector<StormPeriod> storms;
    QPointF lastFix;
    QString tendency;
    QString unit;
};

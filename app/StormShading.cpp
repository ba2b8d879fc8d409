// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StormShading.h"

#include <QtCharts/QChart>
#include <QtCharts/QValueAxis>
#include <QtGui/QBrush>
#include <QtGui/QPen>
#include <QtWidgets/QGraphicsRectItem>

namespace {
// Above the chart's background and plot area, below its grid and its series.
constexpr double ShadeZ = 0.5;
}

StormShading::StormShading(QObject* parent)
    : QObject(parent)
{
    connect(this, &StormShading::styleChanged, this, &StormShading::layout);
}

StormShading::~StormShading()
{
    clear();
}

void StormShading::show(QtCharts::QAbstractSeries* series, const QVariantList& list)
{
    periods.clear();
    for (const QVariant& entry : list) {
        const QVariantMap map = entry.toMap();
        periods.append(Period{map.value(QStringLiteral("start")).toDouble(), map.value(QStringLiteral("end")).toDouble(),
                              map.value(QStringLiteral("level")).toInt()});
    }
    if (series != anchor || !series || series->chart() != chart)
        follow(series);
    layout();
}

QRectF StormShading::shadeRect(int index) const
{
    return index >= 0 && index < shades.size() ? shades.at(index)->rect() : QRectF();
}

void StormShading::follow(QtCharts::QAbstractSeries* series)
{
    clear();
    for (const QMetaObject::Connection& connection : qAsConst(followed))
        disconnect(connection);
    followed.clear();
    anchor = series;
    chart = series ? series->chart() : nullptr;
    if (!chart)
        return;
    followed << connect(chart, &QtCharts::QChart::plotAreaChanged, this, &StormShading::layout);
    // Zoom and drag move the axes' ranges, not the plot area.
    for (QtCharts::QAbstractAxis* axis : series->attachedAxes()) {
        if (auto* valueAxis = qobject_cast<QtCharts::QValueAxis*>(axis))
            followed << connect(valueAxis, &QtCharts::QValueAxis::rangeChanged, this, &StormShading::layout);
    }
}

void StormShading::clear()
{
    // The chart owns the shades it holds, and deletes them with itself.
    if (chart)
        qDeleteAll(shades);
    shades.clear();
}

void StormShading::layout()
{
    if (!chart || !anchor || anchor->chart() != chart) {
        clear();
        emit shown();
        return;
    }
    while (shades.size() > periods.size())
        delete shades.takeLast();
    while (shades.size() < periods.size()) {
        auto* shade = new QGraphicsRectItem(chart);
        shade->setPen(Qt::NoPen);
        shade->setZValue(ShadeZ);
        shade->setAcceptedMouseButtons(Qt::NoButton);
        shades.append(shade);
    }
    const QRectF plot = chart->plotArea();
    for (int i = 0; i < periods.size(); ++i) {
        const Period& period = periods.at(i);
        const double left = chart->mapToPosition(QPointF(period.start, 0.0), anchor).x();
        const double right = chart->mapToPosition(QPointF(period.end, 0.0), anchor).x();
        QColor colour = period.level == 2 ? alarmColour : warningColour;
        colour.setAlphaF(opacity);
        QGraphicsRectItem* shade = shades.at(i);
        shade->setRect(QRectF(QPointF(left, plot.top()), QPointF(right, plot.bottom())).intersected(plot));
        shade->setBrush(colour);
    }
    emit shown();
}

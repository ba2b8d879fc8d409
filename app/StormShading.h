// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCharts/QAbstractSeries>
#include <QtCore/QList>
#include <QtCore/QMetaObject>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QVariant>
#include <QtGui/QColor>

class QGraphicsRectItem;
namespace QtCharts {
class QChart;
}

// Shades the storm marks of a page's chart behind its curve. A chart of the pages draws
// its own scene, where nothing of the page can go under the series; so the shades are put
// into that scene, below the series and the grid, and follow the plot area as the chart is
// resized, zoomed or dragged.
class StormShading : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QColor warningColor MEMBER warningColour NOTIFY styleChanged)
    Q_PROPERTY(QColor alarmColor MEMBER alarmColour NOTIFY styleChanged)
    // How strongly a shade covers the chart's background; the curve stays above it.
    Q_PROPERTY(double shadeOpacity MEMBER opacity NOTIFY styleChanged)
    // The shades now shown.
    Q_PROPERTY(int count READ count NOTIFY shown)

public:
    explicit StormShading(QObject* parent = nullptr);
    ~StormShading() override;

    // Shades `periods`, maps of "start" and "end" in the x units of the series' axis and
    // "level" (1 warning, 2 alarm), on the chart `series` is drawn in.
    Q_INVOKABLE void show(QtCharts::QAbstractSeries* series, const QVariantList& periods);
    // The shade of `index` in the chart's coordinates, to find it on screen.
    Q_INVOKABLE QRectF shadeRect(int index) const;
    int count() const { return shades.size(); }

signals:
    void styleChanged();
    void shown();

private:
    struct Period
    {
        double start = 0.0;
        double end = 0.0;
        int level = 0;
    };

    void follow(QtCharts::QAbstractSeries* series);
    void clear();
    void layout();

    QColor warningColour;
    QColor alarmColour;
    double opacity = 0.3;
    QPointer<QtCharts::QChart> chart;
    QPointer<QtCharts::QAbstractSeries> anchor;
    QList<Period> periods;
    QList<QGraphicsRectItem*> shades;
    QList<QMetaObject::Connection> followed;
};

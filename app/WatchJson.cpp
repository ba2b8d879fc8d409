// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WatchJson.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <cmath>

namespace {

constexpr double MetresPerSecondPerKnot = 1852.0 / 3600.0;

QJsonValue number(double value)
{
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue(QJsonValue::Null);
}

QJsonValue text(const QString& value)
{
    return value.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(value);
}

// The flags the tick hands the pages for "nothing to show" are shown as nothing.
QJsonValue shownText(const QString& value, const char* hiddenFlag)
{
    return value == QLatin1String(hiddenFlag) ? QJsonValue(QJsonValue::Null) : text(value);
}

} // namespace

QByteArray WatchJson::state(const ShownState& state, bool withPosition)
{
    QJsonObject pressure{{"hPa", number(state.shownPressureHpa)},
                         {"value", number(state.shownPressure)},
                         {"unit", state.unitText},
                         {"unitIndex", state.unit},
                         {"rawHpa", number(state.rawPressure)},
                         {"level", state.level},
                         {"source", state.source},
                         {"readingTime", state.readingTime > 0 ? QJsonValue(double(state.readingTime)) : QJsonValue()},
                         {"logged", state.logged}};

    QJsonObject warning{{"level", state.warningLevel},
                        {"fall3hHpa", number(state.warningFall3h)},
                        {"fall1hHpa", number(state.warningFall1h)},
                        {"since", state.warningSince > 0 ? QJsonValue(double(state.warningSince)) : QJsonValue()},
                        {"acknowledged", state.warningAcknowledged}};

    // The three-hour tendency in the words of the graph page's title: millibars over three
    // hours, whatever unit is shown, as the tendency is reported at sea.
    const QJsonValue tendency = std::isfinite(state.change3h)
            ? QJsonValue(QStringLiteral("%1 mb / 3h").arg(state.change3h, 0, 'f', 1))
            : QJsonValue();

    QJsonObject display{{"date", text(state.date)},
                        {"pressure", shownText(state.pressureText, "NONE")},
                        {"level", text(state.levelText)},
                        {"unit", text(state.unitText)},
                        {"source", text(state.sourceText)},
                        {"tendency", tendency},
                        {"warning", state.warningLevel > 0 ? text(state.warningText) : QJsonValue()},
                        {"warningDetail", state.warningLevel > 0 ? text(state.warningDetail) : QJsonValue()}};

    QJsonObject root{{"sequence", double(state.sequence)},
                     {"tickTime", double(state.tickTime)},
                     {"pressure", pressure},
                     {"trend", state.trend},
                     {"change3hHpa", number(state.change3h)},
                     {"change1hHpa", number(state.change1h)},
                     {"warning", warning},
                     {"theme", state.theme == 1 ? "dark" : "light"},
                     {"followsSystem", state.followsSystem},
                     {"language", state.language},
                     {"positionServed", withPosition}};

    if (withPosition) {
        display.insert("position", shownText(state.position, "No Position"));
        display.insert("cogsog", shownText(state.cogsog, "no"));
        root.insert("position", state.hasFix ? QJsonValue(QJsonObject{{"latitude", number(state.latitude)},
                                                                      {"longitude", number(state.longitude)},
                                                                      {"cogDegrees", number(state.cog)},
                                                                      {"sogMs", number(state.sog * MetresPerSecondPerKnot)}})
                                             : QJsonValue());
    }
    root.insert("display", display);
    return QJsonDocument(root).toJson(QJsonDocument::Compact);
}

QByteArray WatchJson::span(const ChartSpan& span)
{
    QJsonArray stretches;
    for (const QVector<QPointF>& stretch : span.series) {
        QJsonArray points;
        for (const QPointF& point : stretch)
            points.append(QJsonArray{point.x(), point.y()});
        stretches.append(points);
    }
    const bool empty = span.max < 0.0;
    const QJsonObject root{{"table", span.chartNb},
                           {"now", double(span.now)},
                           {"secondsPerUnit", span.secondsPerUnit},
                           {"empty", empty},
                           {"min", empty ? QJsonValue() : QJsonValue(span.min)},
                           {"max", empty ? QJsonValue() : QJsonValue(span.max)},
                           {"series", stretches}};
    return QJsonDocument(root).toJson(QJsonDocument::Compact);
}

QByteArray WatchJson::forScript(const QByteArray& json)
{
    return QByteArray(json).replace("</", "<\\/");
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WatchDocument.h"

#include "app/WatchJson.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLocale>

// The resource lives in a static library: it must be asked for by name.
static void initialiseWatchResource()
{
    Q_INIT_RESOURCE(watch);
}

namespace {

// The graph page's own buttons and axis labels, in its context, so that the phone reads
// them as the window does.
const char* const RangeLabels[] = {
    QT_TRANSLATE_NOOP("BaroH", "30m"), QT_TRANSLATE_NOOP("BaroH", "3h"),  QT_TRANSLATE_NOOP("BaroH", "6h"),
    QT_TRANSLATE_NOOP("BaroH", "12h"), QT_TRANSLATE_NOOP("BaroH", "1d"),  QT_TRANSLATE_NOOP("BaroH", "2d"),
    QT_TRANSLATE_NOOP("BaroH", "4d"),  QT_TRANSLATE_NOOP("BaroH", "8d"),  QT_TRANSLATE_NOOP("BaroH", "16d")};
const char* const AxisFormats[] = {
    QT_TRANSLATE_NOOP("BaroH", "%dm"), QT_TRANSLATE_NOOP("BaroH", "%dh"), QT_TRANSLATE_NOOP("BaroH", "%dh"),
    QT_TRANSLATE_NOOP("BaroH", "%dh"), QT_TRANSLATE_NOOP("BaroH", "%dh"), QT_TRANSLATE_NOOP("BaroH", "%dh"),
    QT_TRANSLATE_NOOP("BaroH", "%dd"), QT_TRANSLATE_NOOP("BaroH", "%dd"), QT_TRANSLATE_NOOP("BaroH", "%dd")};

QString graphPage(const char* text)
{
    return QCoreApplication::translate("BaroH", text);
}

} // namespace

WatchDocument::WatchDocument()
{
    initialiseWatchResource();
    QFile file(QStringLiteral(":/Watch/watch.html"));
    if (file.open(QIODevice::ReadOnly))
        document = file.readAll();
}

QByteArray WatchDocument::page(const QByteArray& texts, const QByteArray& stateJson) const
{
    const QJsonObject words = QJsonDocument::fromJson(texts).object();
    QByteArray page = document;
    page.replace("__LANG__", words.value(QStringLiteral("lang")).toString(QStringLiteral("en")).toUtf8());
    page.replace("__TEXTS__", WatchJson::forScript(texts));
    page.replace("__STATE__", WatchJson::forScript(stateJson));
    return page;
}

QByteArray WatchDocument::texts()
{
    QJsonArray labels;
    QJsonArray formats;
    for (int i = 0; i < 9; ++i) {
        labels.append(graphPage(RangeLabels[i]));
        formats.append(graphPage(AxisFormats[i]));
    }
    const QJsonObject words{
            {"lang", QLocale().name().section(QLatin1Char('_'), 0, 0)},
            {"title", tr("Brinholt on watch")},
            {"stopped", tr("Brinholt has stopped answering")},
            {"sound", tr("Sound alarms on this phone")},
            {"silence", tr("Silence this phone")},
            {"silenceNote", tr("Silencing a phone does not acknowledge the warning in Brinholt.")},
            {"night", tr("Night")},
            {"readOnly", tr("This page only reads: nothing on it changes Brinholt.")},
            {"noPressure", graphPage(QT_TRANSLATE_NOOP("BaroH", "No pressure data available"))},
            {"barogram", graphPage(QT_TRANSLATE_NOOP("BaroH", "Barogram"))},
            {"labels", labels},
            {"formats", formats}};
    return QJsonDocument(words).toJson(QJsonDocument::Compact);
}

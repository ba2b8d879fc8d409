// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/DeltaFormat.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QSet>
#include <QtCore/QStringList>

namespace {

void checkNotification(const QJsonValue& value, const QString& where, QStringList* out)
{
    if (value.isNull())
        return;
    const QJsonObject n = value.toObject();
    static const QSet<QString> states = {QStringLiteral("nominal"), QStringLiteral("normal"), QStringLiteral("alert"),
                                         QStringLiteral("warn"),    QStringLiteral("alarm"),  QStringLiteral("emergency")};
    if (!states.contains(n.value(QStringLiteral("state")).toString()))
        *out << where + QStringLiteral(": no known state");
    if (!n.value(QStringLiteral("message")).isString())
        *out << where + QStringLiteral(": no message");
    if (!n.value(QStringLiteral("method")).isArray())
        *out << where + QStringLiteral(": no method");
    for (const QJsonValue& m : n.value(QStringLiteral("method")).toArray()) {
        if (m != QJsonValue(QStringLiteral("visual")) && m != QJsonValue(QStringLiteral("sound")))
            *out << where + QStringLiteral(": unknown method");
    }
}

void checkEntries(const QJsonValue& entries, const QString& kind, const QString& where, QStringList* out)
{
    if (!entries.isArray()) {
        *out << where + QStringLiteral(": %1 is no array").arg(kind);
        return;
    }
    for (const QJsonValue& e : entries.toArray()) {
        const QJsonObject entry = e.toObject();
        const QString path = entry.value(QStringLiteral("path")).toString();
        if (path.isEmpty() || !entry.contains(QStringLiteral("value")))
            *out << where + QStringLiteral(": an entry without path or value");
        const QJsonValue value = entry.value(QStringLiteral("value"));
        if (kind == QLatin1String("meta") && value.toObject().value(QStringLiteral("description")).toString().isEmpty())
            *out << where + QStringLiteral(": meta of %1 without description").arg(path);
        if (kind == QLatin1String("values") && path.startsWith(QLatin1String("notifications.")))
            checkNotification(value, where + QLatin1Char(' ') + path, out);
    }
}

} // namespace

QString DeltaFormat::problems(const QByteArray& message)
{
    QStringList out;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(message, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return QStringLiteral("not a JSON object: ") + error.errorString();
    const QJsonObject root = document.object();
    if (!root.value(QStringLiteral("updates")).isArray() || root.value(QStringLiteral("updates")).toArray().isEmpty())
        out << QStringLiteral("no updates");
    static const QSet<QString> allowed = {QStringLiteral("$source"), QStringLiteral("source"),
                                          QStringLiteral("timestamp"), QStringLiteral("values"), QStringLiteral("meta")};
    int index = 0;
    for (const QJsonValue& u : root.value(QStringLiteral("updates")).toArray()) {
        const QString where = QStringLiteral("update %1").arg(index++);
        const QJsonObject update = u.toObject();
        for (const QString& key : update.keys()) {
            if (!allowed.contains(key))
                out << where + QStringLiteral(": unknown member ") + key;
        }
        if (update.contains(QStringLiteral("$source")) == update.contains(QStringLiteral("source")))
            out << where + QStringLiteral(": needs one of $source and source");
        const QString stamp = update.value(QStringLiteral("timestamp")).toString();
        const QDateTime time = QDateTime::fromString(stamp, Qt::ISODateWithMs);
        if (!time.isValid() || time.timeSpec() != Qt::UTC || !stamp.endsWith(QLatin1Char('Z')))
            out << where + QStringLiteral(": timestamp not ISO 8601 UTC: ") + stamp;
        if (!update.contains(QStringLiteral("values")) && !update.contains(QStringLiteral("meta")))
            out << where + QStringLiteral(": neither values nor meta");
        for (const QString& kind : {QStringLiteral("values"), QStringLiteral("meta")}) {
            if (update.contains(kind))
                checkEntries(update.value(kind), kind, where, &out);
        }
    }
    return out.join(QLatin1Char('\n'));
}

QJsonValue DeltaFormat::find(const QByteArray& message, const QString& path, const QString& kind)
{
    const QJsonObject root = QJsonDocument::fromJson(message).object();
    for (const QJsonValue& u : root.value(QStringLiteral("updates")).toArray()) {
        for (const QJsonValue& e : u.toObject().value(kind).toArray()) {
            if (e.toObject().value(QStringLiteral("path")).toString() == path)
                return e.toObject().value(QStringLiteral("value"));
        }
    }
    return QJsonValue(QJsonValue::Undefined);
}

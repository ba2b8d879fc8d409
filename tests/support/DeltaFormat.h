// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>

// The rules of the Signal K v1 delta format that a message of ours must keep: a JSON object
// with `updates`; each update with `$source` or `source` (not both), an ISO 8601
// `timestamp`, and `values` or `meta` (arrays of path and value) and nothing else; a meta
// value with its description; a notification with its state, method and message.
class DeltaFormat
{
public:
    DeltaFormat() = delete;

    // What breaks the rules, one problem a line; empty for a message that keeps them all.
    static QString problems(const QByteArray& message);

    // The value sent at `path` in the message, or an undefined value; `kind` is "values"
    // or "meta".
    static QJsonValue find(const QByteArray& message, const QString& path,
                           const QString& kind = QStringLiteral("values"));
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

class QSqlDatabase;

// The log pages' view of a table: its rows as the list shows them, newest first, and the
// deletion of one row or of all. It takes no lock; the log does.
class LogBrowser
{
public:
    LogBrowser() = delete;

    // Each row as a map of "key", its time as text, and "desc", the list's rich text.
    static QVariantList content(QSqlDatabase& database, const QString& table);
    static void removeRow(QSqlDatabase& database, const QString& table, const QString& key);
    static void empty(QSqlDatabase& database, const QString& table);
};

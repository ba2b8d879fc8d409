// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtCore/QTextStream>

class QIODevice;
class QSqlQuery;

// Writes the positions of log rows as one GPX 1.1 track, the same in every language and
// unit. No XML declaration, no indentation, no escaping.
class GpxExport
{
public:
    explicit GpxExport(QIODevice* device);

    void writeHead(const QString& trackName);
    // Writes the row that the query stands on, unless it was logged without a fix.
    void writeRow(const QSqlQuery& row);
    void writeTail();

private:
    QTextStream stream;
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QString>
#include <QtCore/QTextStream>

class QIODevice;
class QSqlQuery;

// Writes log rows as lines for a spreadsheet. The file follows the program's language:
// in French ";" between fields and a decimal comma, otherwise "," and a decimal point.
// Nothing is quoted or escaped.
class CsvExport
{
    // The header's texts belong to the log's translation context.
    Q_DECLARE_TR_FUNCTIONS(DataSource)

public:
    // Reads the settings that shape the file once; they hold for the whole export.
    explicit CsvExport(QIODevice* device);

    void writeHeader();
    // Writes the row that the query stands on.
    void writeRow(const QSqlQuery& row);

private:
    QString localised(QString line) const;

    QTextStream stream;
    int language = 0;
    int timeZone = 0;
    int unitEle = 0;
    QString pressureUnit;
};

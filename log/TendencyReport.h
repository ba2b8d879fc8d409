// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "util/ThreeHourPoints.h"

#include <QtCore/QObject>
#include <QtCore/QString>

#include <optional>

// The pressure as a forecaster reads it after each logged reading: the tendency in the
// words of the marine glossary with its figure in the user's unit, the WMO characteristic
// of the last three hours, and, when asked for, the rule-of-thumb forecast. Empty while
// the log has less than three hours behind it. The texts are in the language of the
// moment they were judged.
class TendencyReport : public QObject
{
    Q_OBJECT
    // "falling quickly, -4.1 hPa in 3 h"
    Q_PROPERTY(QString words READ getWords NOTIFY evaluated)
    // The WMO code 0 to 8, -1 while there is none; and its line.
    Q_PROPERTY(int characteristic READ getCharacteristic NOTIFY evaluated)
    Q_PROPERTY(QString characteristicText READ getCharacteristicText NOTIFY evaluated)
    // The forecast's line, labelled as the rule of thumb it is; empty when switched off, out
    // of the temperate latitudes, or with no hemisphere to read it for.
    Q_PROPERTY(QString forecast READ getForecast NOTIFY evaluated)

public:
    explicit TendencyReport(QObject* parent = nullptr);

    // `points` of the last three hours, none while the log is younger; the latitude of the
    // last fix, if any; the reading's time in seconds since the epoch.
    void evaluate(const std::optional<ThreeHourPoints>& points, std::optional<double> latitude, qint64 time);

    QString getWords() const { return words; }
    int getCharacteristic() const { return characteristic; }
    QString getCharacteristicText() const { return characteristicText; }
    QString getForecast() const { return forecast; }

    // The words with the change in the chosen unit, signed.
    static QString wordsLine(const ThreeHourPoints& points);
    static QString forecastLine(const ThreeHourPoints& points, std::optional<double> latitude, qint64 time);

signals:
    void evaluated();

private:
    QString words;
    int characteristic = -1;
    QString characteristicText;
    QString forecast;
};

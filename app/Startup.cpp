#include "app/Startup.h"

#include <QtCore/QSettings>

QString Startup::decideLanguage(QLocale::Language hostLanguage)
{
    QSettings settings(QStringLiteral("./brinholt.ini"), QSettings::IniFormat);
    QString language;
    const int stored = settings.value(QStringLiteral("language"), -1).toInt();
    if (stored == 0) {
        language = QStringLiteral("en");
    } else if (stored == -1) {
        language = hostLanguage == QLocale::French ? QStringLiteral("fr") : QStringLiteral("en");
        settings.setValue(QStringLiteral("language"), language == QLatin1String("en") ? 0 : 1);
    } else {
        language = QStringLiteral("fr");
    }
    // French gets index 1 of the date order here, whatever the labels of that choice say.
    if (settings.value(QStringLiteral("formatMMDD"), -1).toInt() == -1)
        settings.setValue(QStringLiteral("formatMMDD"), language == QLatin1String("en") ? 0 : 1);
    return language;
}

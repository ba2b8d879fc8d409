// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Startup.h"

#include "util/SettingKeys.h"

#include <QtCore/QSettings>

QString Startup::decideLanguage(QLocale::Language hostLanguage)
{
    QSettings settings(QStringLiteral("./brinholt.ini"), QSettings::IniFormat);
    QString language;
    const int stored = settings.value(SettingKey::Language, SettingDefault::LanguageAtStartup).toInt();
    if (stored == 0) {
        language = QStringLiteral("en");
    } else if (stored == -1) {
        language = hostLanguage == QLocale::French ? QStringLiteral("fr") : QStringLiteral("en");
        settings.setValue(SettingKey::Language, language == QLatin1String("en") ? 0 : 1);
    } else {
        language = QStringLiteral("fr");
    }
    // French gets index 1 of the date order here, whatever the labels of that choice say.
    if (settings.value(SettingKey::FormatMMDD, SettingDefault::FormatMMDDAtStartup).toInt() == -1)
        settings.setValue(SettingKey::FormatMMDD, language == QLatin1String("en") ? 0 : 1);
    return language;
}

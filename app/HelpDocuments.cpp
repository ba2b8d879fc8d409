// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/HelpDocuments.h"

#include "app/SettingsAccess.h"
#include "util/SettingKeys.h"

#include <QtCore/QFile>

namespace {

// The whole document as text, cut at its first NUL; empty when the resource is missing.
QString readDocument(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    const QByteArray bytes = file.readAll();
    file.close();
    return QString(bytes);
}

} // namespace

HelpDocuments::HelpDocuments(const SettingsAccess& settings, const QString& appPath)
    : settings(settings)
    , appPath(appPath)
{
}

bool HelpDocuments::french() const
{
    return settings.get(SettingKey::Language, SettingDefault::Language).toInt() != 0;
}

QString HelpDocuments::helpHtml() const
{
    QString html = readDocument(QStringLiteral(":/Help/English/DesktopHelp.htm"));
    // The order matters: small text must end one step up, not two.
    html.replace(QStringLiteral("<img "), QStringLiteral("&nbsp;<img "));
    html.replace(QStringLiteral(" large;"), QStringLiteral(" x-large;"));
    html.replace(QStringLiteral(" small;"), QStringLiteral(" large;"));
    html.replace(QStringLiteral("src=\"./Brinholt Help_files/"), QStringLiteral("src=\"/Help/English/"));
    return html;
}

QUrl HelpDocuments::helpBaseUrl() const
{
    return QUrl::fromLocalFile(appPath + QStringLiteral("help_files"));
}

QUrl HelpDocuments::helpUrl() const
{
    if (french())
        return QUrl::fromLocalFile(appPath + QStringLiteral("help_files/French/Brinholt_help_vQT_FRENCH.htm"));
    return QUrl::fromLocalFile(appPath + QStringLiteral("help_files/English/Brinholt_help_vQT.htm"));
}

QString HelpDocuments::privacyPolicy() const
{
    QString html = readDocument(french() ? QStringLiteral(":/Help/French/brinholt_privacy_policy_fr.html")
                                         : QStringLiteral(":/Help/English/brinholt_privacy_policy_en.html"));
    html.replace(QStringLiteral("<img "), QStringLiteral("&nbsp;<img "));
    html.replace(QStringLiteral(" small;"), QStringLiteral(" medium;"));
    // Read again: the language may have changed since the document was chosen.
    if (french())
        html.replace(QStringLiteral("src=\""), QStringLiteral("src=\"/Help/French/"));
    else
        html.replace(QStringLiteral("src=\""), QStringLiteral("src=\"/Help/English/"));
    return html;
}

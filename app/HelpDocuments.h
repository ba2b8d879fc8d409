// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtCore/QUrl>

class SettingsAccess;

// The help and the privacy policy as the help page's rich-text control shows them: read
// from the resources at each call, with images pointed at the resources and text sizes one
// step up. And the addresses of the phone hosts' help, which the desktop only computes.
class HelpDocuments
{
public:
    HelpDocuments(const SettingsAccess& settings, const QString& appPath);

    // In English whatever the language: there is no French desktop help.
    QString helpHtml() const;
    QString privacyPolicy() const;
    QUrl helpBaseUrl() const;
    QUrl helpUrl() const;

private:
    bool french() const;

    const SettingsAccess& settings;
    const QString& appPath;
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QLocale>
#include <QtCore/QString>

// The settings decisions start-up makes before anything else reads the INI file.
class Startup
{
public:
    Startup() = delete;

    // Reads "language" from the INI file in the working directory and returns "en" or
    // "fr". A first start decides by the host's language and writes the choice back; a
    // first start also writes the date order, 0 for English and 1 otherwise.
    static QString decideLanguage(QLocale::Language hostLanguage);
};

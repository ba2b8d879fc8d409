// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

// Where a copy of the program keeps its settings, log and exports.
//
// A copy laid out as installed, its executable in a folder named "bin" with
// "share/brinholt" beside that folder (/usr/bin/brinholt and /usr/share/brinholt), keeps
// them per user in $XDG_DATA_HOME/brinholt: nobody may write beside an installed
// executable. Every other copy, the build tree above all, keeps them beside the executable.
class DataFolder
{
public:
    DataFolder() = delete;

    static bool isInstalled(const QString& executableFolder);
    // <prefix>/share/brinholt of an installed copy.
    static QString installedShareFolder(const QString& executableFolder);
    // $XDG_DATA_HOME/brinholt, by default ~/.local/share/brinholt; absolute, no closing separator.
    static QString userFolder();
    // The catalogues the language switch looks for by bare file name in the data folder.
    static QStringList catalogueNames();

    // For an installed copy: makes `dataFolder` if needed and brings the installed
    // catalogues into it, replacing those that differ, so that an upgrade's texts are used.
    // Nothing to do for any other copy. False if the folder cannot be made.
    static bool prepare(const QString& executableFolder, const QString& dataFolder);

private:
    static bool copyIfDifferent(const QString& source, const QString& destination);
};

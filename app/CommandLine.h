// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

// The few things Brinholt does from the command line without opening its window:
// `--help`, `--version`, and `--export TABLE FILE`. Any other argument leaves the start
// as it always was: the window opens and the arguments are only logged.
class CommandLine
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)

public:
    // The exit status when the arguments asked for one of the above, and nothing when the
    // window is to open. `callerFolder` is where relative file names are taken from: the
    // folder the command was given in, before the start moves to the data folder.
    static std::optional<int> handle(const QStringList& arguments, const QString& callerFolder);

    // The table by name (BARO30M … BAR16D, any case) or by number 0 to 8; -1 for neither.
    static int tableIndex(const QString& name);
    // Writes CSV, GPX, PNG or PDF by the file's extension, in the user's settings.
    static int exportTable(const QString& table, const QString& fileName);

    static QString usage();

    enum Status { Ok = 0, Failed = 1, BadArguments = 2 };
};

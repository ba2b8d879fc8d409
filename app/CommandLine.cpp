// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CommandLine.h"

#include "app/BackEnd.h"
#include "app/Startup.h"
#include "app/TranslationHandler.h"
#include "log/Barogram.h"
#include "log/DataSource.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QTextStream>
#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>

#include <cstdio>

namespace {
const QStringList TableNames = {"BARO30M", "BARO3H", "BARO6H", "BAR12H", "BARO1D",
                                "BARO2D",  "BARO4D", "BARO8D", "BAR16D"};

void say(const QString& text)
{
    QTextStream(stderr) << text << '\n';
}

// Catches the "show the written file" step of the exports: from the command line nothing
// opens, and being asked to show the file is the sign it was written.
class WrittenFile : public QObject
{
    Q_OBJECT

public:
    WrittenFile() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "openUrl"); }
    ~WrittenFile() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    bool written = false;

public slots:
    void openUrl(const QUrl&) { written = true; }
};

QString version()
{
    BackEnd settingsOnly{BackEnd::SettingsOnly()};
    const QString text = settingsOnly.getVersion();
    backend = nullptr;
    return text;
}

// As GNU programs print it: the terms in one line, and that there is no warranty.
QString licence()
{
    return QStringLiteral("Copyright (C) 2026 Quillmere\n"
                          "License GPLv3+: GNU GPL version 3 or later <https://gnu.org/licenses/gpl.html>.\n"
                          "This is free software: you are free to change and redistribute it.\n"
                          "There is NO WARRANTY, to the extent permitted by law.");
}

// Only our own lines reach the terminal: the instrument's diagnostics are for its log.
void quiet(QtMsgType, const QMessageLogContext&, const QString&) {}
}

QString CommandLine::usage()
{
    return tr("Usage: brinholt [--export TABLE FILE | --help | --version]\n"
              "\n"
              "Without options Brinholt opens its window.\n"
              "  --export TABLE FILE  write a log table to FILE without opening the window;\n"
              "                       the extension chooses the form: .csv, .gpx, .png or .pdf.\n"
              "                       TABLE is BARO30M, BARO3H, BARO6H, BAR12H, BARO1D, BARO2D,\n"
              "                       BARO4D, BARO8D or BAR16D, or its number 0 to 8.\n"
              "  --help               show this text.\n"
              "  --version            show the version.");
}

int CommandLine::tableIndex(const QString& name)
{
    bool number = false;
    const int index = name.toInt(&number);
    if (number)
        return index >= 0 && index < TableNames.size() ? index : -1;
    return TableNames.indexOf(name.toUpper());
}

std::optional<int> CommandLine::handle(const QStringList& arguments, const QString& callerFolder)
{
    const QString first = arguments.value(1);
    if (first == QStringLiteral("--help") || first == QStringLiteral("-h")) {
        QTextStream(stdout) << usage() << '\n';
        return Ok;
    }
    if (first == QStringLiteral("--version")) {
        QTextStream(stdout) << QStringLiteral("Brinholt ") << version() << '\n' << licence() << '\n';
        return Ok;
    }
    if (first != QStringLiteral("--export"))
        return std::nullopt;
    if (arguments.size() != 4) {
        say(tr("--export needs a table and a file name."));
        say(usage());
        return BadArguments;
    }
    return exportTable(arguments.at(2), QDir(callerFolder).absoluteFilePath(arguments.at(3)));
}

int CommandLine::exportTable(const QString& table, const QString& fileName)
{
    const int index = tableIndex(table);
    if (index < 0) {
        say(tr("Unknown table %1: use BARO30M, BARO3H, BARO6H, BAR12H, BARO1D, BARO2D, BARO4D, BARO8D, "
               "BAR16D or 0 to 8.").arg(table));
        return BadArguments;
    }
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    static const QStringList known = {"csv", "gpx", "png", "pdf"};
    if (!known.contains(suffix)) {
        say(tr("Unknown extension of %1: use .csv, .gpx, .png or .pdf.").arg(fileName));
        return BadArguments;
    }
    // A file that cannot be made is refused before anything is written.
    if (!QFileInfo(QFileInfo(fileName).absolutePath()).isWritable()
        || (QFileInfo::exists(fileName) && !QFileInfo(fileName).isWritable())) {
        say(tr("Cannot write %1.").arg(fileName));
        return Failed;
    }

    const QtMessageHandler previous = qInstallMessageHandler(quiet);
    bool written = false;
    {
        BackEnd settingsOnly{BackEnd::SettingsOnly()};
        // The user's language, for the CSV header and its decimal comma.
        TranslationHandler translation(nullptr);
        translation.selectLanguage(Startup::decideLanguage(QLocale::system().language()));
        DataSource log(nullptr);
        dataSource = &log;
        if (suffix == QStringLiteral("png") || suffix == QStringLiteral("pdf")) {
            written = Barogram(log, index).save(fileName);
        } else {
            WrittenFile shown;
            // The exports take the extension to choose GPX; anything else is CSV.
            if (suffix == QStringLiteral("gpx"))
                log.exportGpx(index, fileName);
            else
                log.exportCsv(index, fileName);
            written = shown.written;
        }
        dataSource = nullptr;
    }
    backend = nullptr;
    qInstallMessageHandler(previous);

    if (!written) {
        say(tr("Cannot write %1.").arg(fileName));
        return Failed;
    }
    return Ok;
}

#include "CommandLine.moc"

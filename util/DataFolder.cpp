// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/DataFolder.h"

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLibraryInfo>
#include <QtCore/QStandardPaths>

namespace {

const QString FolderName = QStringLiteral("brinholt");

// The program's own catalogues, installed under share/brinholt/translations.
const QStringList OwnCatalogues = {QStringLiteral("Brinholt_en_US.qm"), QStringLiteral("Brinholt_fr_FR.qm")};
// Qt's French texts, from the system's Qt translations. qt_fr.qm only names the others
// and loads only when all of them lie beside it.
const QStringList QtCatalogues = {QStringLiteral("qt_fr.qm"), QStringLiteral("qtbase_fr.qm"),
                                  QStringLiteral("qtscript_fr.qm"), QStringLiteral("qtmultimedia_fr.qm"),
                                  QStringLiteral("qtxmlpatterns_fr.qm")};

} // namespace

bool DataFolder::isInstalled(const QString& executableFolder)
{
    const QDir bin(executableFolder);
    return bin.dirName() == QLatin1String("bin") && QFileInfo(installedShareFolder(executableFolder)).isDir();
}

QString DataFolder::installedShareFolder(const QString& executableFolder)
{
    return QDir::cleanPath(QDir(executableFolder).absoluteFilePath(QStringLiteral("../share/") + FolderName));
}

QString DataFolder::userFolder()
{
    const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return QDir::cleanPath(QDir(base).absoluteFilePath(FolderName));
}

QStringList DataFolder::catalogueNames()
{
    return OwnCatalogues + QtCatalogues;
}

bool DataFolder::prepare(const QString& executableFolder, const QString& dataFolder)
{
    if (!isInstalled(executableFolder))
        return true;
    if (!QDir().mkpath(dataFolder)) {
        qWarning().noquote() << "data folder cannot be made" << dataFolder;
        return false;
    }
    const QDir own(installedShareFolder(executableFolder) + QStringLiteral("/translations"));
    const QDir qt(QLibraryInfo::location(QLibraryInfo::TranslationsPath));
    const QDir data(dataFolder);
    for (const QString& name : OwnCatalogues)
        copyIfDifferent(own.filePath(name), data.filePath(name));
    for (const QString& name : QtCatalogues)
        copyIfDifferent(qt.filePath(name), data.filePath(name));
    return true;
}

bool DataFolder::copyIfDifferent(const QString& source, const QString& destination)
{
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly))
        return false; // a missing catalogue leaves the texts in English, as in the build tree
    const QByteArray bytes = in.readAll();
    QFile existing(destination);
    if (existing.open(QIODevice::ReadOnly) && existing.readAll() == bytes)
        return true;
    existing.close();
    QFile out(destination);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        qWarning().noquote() << "catalogue cannot be copied to" << destination;
        return false;
    }
    return out.write(bytes) == bytes.size();
}

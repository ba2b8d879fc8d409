// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/MountNamespace.h"
#include "tests/support/NamespaceChild.h"

#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

namespace {

const char FolderVariable[] = "BRINHOLT_PRIVATE_TMPFS";
const char ParentVariable[] = "BRINHOLT_PARENT_MOUNTS";

QString ownMountNamespace()
{
    return QFileInfo(QStringLiteral("/proc/self/ns/mnt")).symLinkTarget();
}

} // namespace

QString MountNamespace::folder()
{
    const QString folder = qEnvironmentVariable(FolderVariable);
    if (folder.isEmpty())
        return QString();
    const QString parent = qEnvironmentVariable(ParentVariable);
    const QString own = ownMountNamespace();
    if (parent.isEmpty() || own.isEmpty() || own == parent)
        qFatal("%s is set, but this process is not in a mount namespace of its own", FolderVariable);
    return folder;
}

bool MountNamespace::run(const QString& testFunction, int sizeKb, QString* report, int timeoutMs)
{
    QTemporaryDir mountPoint;
    if (!mountPoint.isValid()) {
        *report = QStringLiteral("no folder for the mount point");
        return false;
    }
    // unshare makes the new namespace's mounts private, so the tmpfs is seen by the child
    // alone and goes with it.
    const QString setup = QStringLiteral("mount -t tmpfs -o size=%1k,mode=0755 brinholt-test \"$BRINHOLT_PRIVATE_TMPFS\""
                                         " || { echo 'private tmpfs setup failed'; false; }")
                                  .arg(sizeKb);
    const QStringList environment = {QLatin1String(FolderVariable) + QLatin1Char('=') + mountPoint.path(),
                                     QLatin1String(ParentVariable) + QLatin1Char('=') + ownMountNamespace()};
    return NamespaceChild::run('m', QStringLiteral("mount namespace"), setup, environment, testFunction, timeoutMs,
                               report);
}

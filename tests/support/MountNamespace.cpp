#include "tests/support/MountNamespace.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

#include <unistd.h>

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
    const QString script = QStringLiteral(
            "mount -t tmpfs -o size=%1k,mode=0755 brinholt-test \"$BRINHOLT_PRIVATE_TMPFS\""
            " || { echo 'private tmpfs setup failed'; exit 97; }; exec \"$0\" \"$1\"")
                                   .arg(sizeKb);
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(FolderVariable), mountPoint.path());
    environment.insert(QString::fromLatin1(ParentVariable), ownMountNamespace());
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    // Without root a user namespace comes first, so that the mount one may be made.
    const QString unshareFlags = geteuid() == 0 ? QStringLiteral("-m") : QStringLiteral("-rm");
    child.start(QStringLiteral("unshare"), {unshareFlags, QStringLiteral("sh"), QStringLiteral("-c"), script,
                                            QCoreApplication::applicationFilePath(), testFunction});
    if (!child.waitForStarted(10000)) {
        *report = QStringLiteral("could not make a private mount namespace: unshare did not start (%1)")
                          .arg(child.errorString());
        return false;
    }
    if (!child.waitForFinished(timeoutMs)) {
        child.kill();
        child.waitForFinished(5000);
        *report = QStringLiteral("the test on the private tmpfs did not end within %1 ms:\n%2")
                          .arg(timeoutMs)
                          .arg(QString::fromLocal8Bit(child.readAll()));
        return false;
    }
    const QString output = QString::fromLocal8Bit(child.readAll());
    if (child.exitStatus() != QProcess::NormalExit || child.exitCode() == 97
        || output.contains(QLatin1String("unshare:"))) {
        *report = QStringLiteral("could not make a private mount namespace:\n%1").arg(output);
        return false;
    }
    *report = output;
    return child.exitCode() == 0 && output.contains(QLatin1String("PASS   : "))
            && output.contains(QLatin1String(" 0 failed, 0 skipped"));
}

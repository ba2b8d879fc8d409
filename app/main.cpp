// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AlarmSound.h"
#include "app/CommandLine.h"
#include "app/Composition.h"
#include "app/DesktopNotifier.h"
#include "app/SignalWatcher.h"
#include "app/Startup.h"
#include "app/TranslationHandler.h"
#include "app/WarningAnnouncer.h"
#include "log/DataSource.h"
#include "util/DataFolder.h"
#include "util/Util.h"

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QLocale>
#include <QtCore/QProcess>
#include <QtCore/QUrl>
#include <QtGui/QFont>
#include <QtGui/QIcon>
#include <QtQml/QQmlApplicationEngine>
#include <QtWidgets/QApplication>

namespace {

const QString OrganizationDomain = QStringLiteral("quillmere.com");
const QString ApplicationIdentifier = QStringLiteral("com.quillmere.brinholt");

// The application's icon for every window, and the desktop entry that names it.
void setWindowIcon()
{
    QIcon icon;
    for (const int size : {32, 64, 128, 256})
        icon.addFile(QStringLiteral(":/icon/%1.png").arg(size), QSize(size, size));
    QGuiApplication::setWindowIcon(icon);
    QGuiApplication::setDesktopFileName(ApplicationIdentifier);
}

// Only macOS puts applications to sleep behind the user's back; elsewhere there is
// nothing to switch off.
void keepAwake()
{
#ifdef Q_OS_MACOS
    const QStringList defaultsArguments = {QStringLiteral("write"), ApplicationIdentifier,
                                           QStringLiteral("NSAppSleepDisabled"),
                                           QStringLiteral("-bool"), QStringLiteral("YES")};
    QProcess::execute(QStringLiteral("defaults"), defaultsArguments);
#endif
}

} // namespace

int main(int argc, char* argv[])
{
    qWarning().noquote() << "Brinholt" << "in main with" << argc << static_cast<void*>(argv);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Quillmere"));
    QCoreApplication::setOrganizationDomain(OrganizationDomain);
    const QString callerFolder = QDir::currentPath();
    const QString dataFolder = Util::currentPath();
    // An installed copy's folder is made on its first start and gets the catalogues.
    DataFolder::prepare(QCoreApplication::applicationDirPath(), dataFolder);
    QDir::setCurrent(dataFolder);
    if (const std::optional<int> status = CommandLine::handle(QCoreApplication::arguments(), callerFolder))
        return *status;
    setWindowIcon();
    keepAwake();

    const QString language = Startup::decideLanguage(QLocale::system().language());

    QFont font = QApplication::font();
    font.setCapitalization(QFont::MixedCase);
    QApplication::setFont(font);

    Composition::registerTypes();

    QQmlApplicationEngine engine;
    Composition composition(engine);
    composition.translations().selectLanguage(language);

    const QUrl url = Composition::MainPage;
    QObject::connect(&engine, &QQmlApplicationEngine::objectCreated, &app,
                     [url](QObject* object, const QUrl& objectUrl) {
                         if (!object && url == objectUrl)
                             QCoreApplication::exit(-1);
                     },
                     Qt::QueuedConnection);

    composition.build();

    // The pressure-fall warning reaches the navigator beyond the pages.
    DesktopNotifier notifier;
    AlarmSound alarmSound;
    WarningAnnouncer announcer(*composition.log()->getWarning(), notifier, alarmSound);

    SignalWatcher signalWatcher;
    QObject::connect(&signalWatcher, &SignalWatcher::terminationRequested, &app, &QCoreApplication::quit);

    composition.load();
    const int status = QApplication::exec();

    composition.tearDown();
    return status;
}

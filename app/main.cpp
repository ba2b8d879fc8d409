#include "app/Composition.h"
#include "app/SignalWatcher.h"
#include "app/Startup.h"
#include "app/TranslationHandler.h"
#include "util/Util.h"

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QLocale>
#include <QtCore/QProcess>
#include <QtCore/QUrl>
#include <QtGui/QFont>
#include <QtQml/QQmlApplicationEngine>
#include <QtWidgets/QApplication>

namespace {

const QString OrganizationDomain = QStringLiteral("quillmere.com");
[[maybe_unused]] const QString ApplicationIdentifier = QStringLiteral("com.quillmere.brinholt");

} // namespace

int main(int argc, char* argv[])
{
    qWarning().noquote() << "Brinholt" << "in main with" << argc << static_cast<void*>(argv);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Quillmere"));
    QCoreApplication::setOrganizationDomain(OrganizationDomain);
    QDir::setCurrent(Util::currentPath());

    // Only macOS puts applications to sleep behind the user's back; elsewhere there is
    // nothing to switch off.
#ifdef Q_OS_MACOS
    const QStringList defaultsArguments = {QStringLiteral("write"), ApplicationIdentifier,
                                           QStringLiteral("NSAppSleepDisabled"),
                                           QStringLiteral("-bool"), QStringLiteral("YES")};
    QProcess::execute(QStringLiteral("defaults"), defaultsArguments);
#endif

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

    SignalWatcher signalWatcher;
    QObject::connect(&signalWatcher, &SignalWatcher::terminationRequested, &app, &QCoreApplication::quit);

    composition.load();
    const int status = QApplication::exec();

    composition.tearDown();
    return status;
}

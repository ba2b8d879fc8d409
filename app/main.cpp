#include "app/BackEnd.h"
#include "app/SignalWatcher.h"
#include "app/Startup.h"
#include "app/TranslationHandler.h"
#include "log/DataSource.h"
#include "util/Util.h"

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QLocale>
#include <QtCore/QProcess>
#include <QtCore/QUrl>
#include <QtQml/QQmlApplicationEngine>
#include <QtQml/QQmlContext>
#include <QtQuick/QQuickView>
#include <QtQuickControls2/QQuickStyle>
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

    qmlRegisterType<BackEnd>("backend", 1, 0, "BackEnd");
    qmlRegisterSingletonType(QUrl(QStringLiteral("qrc:/Theme.qml")), "backend", 1, 0, "Theme");
    QQuickStyle::setStyle(QStringLiteral("Material"));

    QQmlApplicationEngine engine;
    TranslationHandler translationHandler(&engine);
    engine.rootContext()->setContextProperty(QStringLiteral("translateHandler"), &translationHandler);
    translationHandler.selectLanguage(language);

    const QUrl url(QStringLiteral("qrc:/main"));
    QObject::connect(&engine, &QQmlApplicationEngine::objectCreated, &app,
                     [url](QObject* object, const QUrl& objectUrl) {
                         if (!object && url == objectUrl)
                             QCoreApplication::exit(-1);
                     },
                     Qt::QueuedConnection);

    // Never shown: the visible window is the main page's. Its root context is the engine's.
    QQuickView view(&engine, nullptr);
    view.setResizeMode(QQuickView::SizeRootObjectToView);

    backend = new BackEnd(&engine);
    view.rootContext()->setContextProperty(QStringLiteral("backend"), backend);
    dataSource = new DataSource(&view, nullptr);
    view.rootContext()->setContextProperty(QStringLiteral("dataSource"), dataSource);

    SignalWatcher signalWatcher;
    QObject::connect(&signalWatcher, &SignalWatcher::terminationRequested, &app, &QCoreApplication::quit);

    engine.load(url);
    const int status = QApplication::exec();

    delete dataSource;
    dataSource = nullptr;
    delete backend;
    backend = nullptr;
    return status;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageHarness.h"

#include "app/BackEnd.h"
#include "app/Composition.h"
#include "app/TranslationHandler.h"
#include "log/DataSource.h"
#include "nmea/NmeaSourceType.h"
#include "tests/support/TestDatabase.h"
#include "util/Clock.h"

#include <QtCharts/QXYSeries>
#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QSet>
#include <QtCore/QSettings>
#include <QtCore/QTimer>
#include <QtGui/QDesktopServices>
#include <QtQml/QQmlApplicationEngine>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlExpression>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickView>
#include <QtQuick/QQuickWindow>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

#include <atomic>

namespace {

const QString TestConnection = QStringLiteral("PAGES_TEST");

std::atomic<PageHarness*> current{nullptr};
QMutex recordLock;

// What the core writes on its own while the pages run: nothing else may appear.
const QStringList CoreDiagnostics = {
    QStringLiteral("BackEnd starting"),     QStringLiteral("no pressure sensor"),
    QStringLiteral("BackEnd created"),      QStringLiteral("backend deleted"),
    QStringLiteral("trying to start location services"), QStringLiteral("location services started"),
    QStringLiteral("dataSource created"),   QStringLiteral("datasource deleted"),
    QStringLiteral("translator qtbase empty ?"), QStringLiteral("translator qt empty ?"),
    QStringLiteral("translator brinholt empty ?"), QStringLiteral("pressure fall level"),
};

// The pages' own console lines.
const QStringList PageLogs = {
    QStringLiteral("serie created"),      QStringLiteral("main page loaded, OS is"),
    QStringLiteral("saving size"),        QStringLiteral("main deleted"),
    QStringLiteral("language changed to "), QStringLiteral("file selected "),
    QStringLiteral("page shown "),
};

bool startsWithAny(const QString& text, const QStringList& prefixes)
{
    for (const QString& prefix : prefixes) {
        if (text.startsWith(prefix))
            return true;
    }
    return false;
}

QSqlDatabase testDatabase(const QString& path)
{
    return TestDatabase::open(TestConnection, path);
}

void collect(QObject* object, const QString& objectName, QObject** found, QSet<QObject*>& seen)
{
    if (*found || !object || seen.contains(object))
        return;
    seen.insert(object);
    if (object->objectName() == objectName) {
        *found = object;
        return;
    }
    if (auto* item = qobject_cast<QQuickItem*>(object)) {
        const auto children = item->childItems();
        for (QQuickItem* child : children)
            collect(child, objectName, found, seen);
    }
    const auto children = object->children();
    for (QObject* child : children)
        collect(child, objectName, found, seen);
}

} // namespace

PageHarness::PageHarness(bool liveTick)
    : liveTick(liveTick)
{
    Composition::registerTypes();
    current.store(this);
    previousHandler = qInstallMessageHandler(&PageHarness::handle);
    // No test may ever open a page on the network.
    QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "openUrl");
    QDesktopServices::setUrlHandler(QStringLiteral("http"), this, "openUrl");
    qApp->installEventFilter(this);
}

PageHarness::~PageHarness()
{
    stop();
    qApp->removeEventFilter(this);
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    QDesktopServices::unsetUrlHandler(QStringLiteral("http"));
    qInstallMessageHandler(previousHandler);
    current.store(nullptr);
    Clock::reset();
}

void PageHarness::handle(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    PageHarness* harness = current.load();
    if (harness) {
        QMutexLocker locker(&recordLock);
        harness->recorded.append({type, QString::fromLatin1(context.category ? context.category : ""), message});
    }
    if (harness && harness->previousHandler)
        harness->previousHandler(type, context, message);
}

QStringList PageHarness::unexpectedMessages() const
{
    QMutexLocker locker(&recordLock);
    QStringList unexpected;
    for (const Message& message : recorded) {
        if (message.type == QtDebugMsg || message.type == QtInfoMsg) {
            if (message.category == QLatin1String("qml") && !startsWithAny(message.text, PageLogs))
                unexpected << message.text;
            continue;
        }
        if (!startsWithAny(message.text, CoreDiagnostics))
            unexpected << message.text;
    }
    return unexpected;
}

QStringList PageHarness::messages() const
{
    QMutexLocker locker(&recordLock);
    QStringList texts;
    for (const Message& message : recorded)
        texts << message.text;
    return texts;
}

void PageHarness::clearMessages()
{
    QMutexLocker locker(&recordLock);
    recorded.clear();
}

void PageHarness::openUrl(const QUrl& url)
{
    urls << url;
}

bool PageHarness::eventFilter(QObject* watched, QEvent* event)
{
    // The sampling tick is the only repeating precise 2-second timer: held, tests tick by hand.
    if (!liveTick && event->type() == QEvent::Timer) {
        auto* timer = qobject_cast<QTimer*>(watched);
        if (timer && timer->interval() == 2000 && timer->timerType() == Qt::PreciseTimer && !timer->isSingleShot()) {
            timer->stop();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

void PageHarness::writeSetting(const QString& key, const QVariant& value)
{
    if (BackEnd* back = backEnd()) {
        back->setSetting(key, value);
        return;
    }
    QSettings ini(dataFolder.filePath(QStringLiteral("brinholt.ini")), QSettings::IniFormat);
    ini.setValue(key, value);
}

bool PageHarness::start(bool show, const QString& language)
{
    qmlEngine.reset(new QQmlApplicationEngine);
    composition.reset(new Composition(*qmlEngine));
    composition->translations().selectLanguage(language);
    composition->build();
    composition->load();
    QQuickWindow* shown = window();
    if (!shown)
        return false;
    if (show) {
        shown->show();
        if (!QTest::qWaitForWindowExposed(shown))
            return false;
    }
    return true;
}

void PageHarness::stop()
{
    composition.reset();
    qmlEngine.reset();
    if (QSqlDatabase::contains(TestConnection)) {
        QSqlDatabase::database(TestConnection, false).close();
        QSqlDatabase::removeDatabase(TestConnection);
    }
    QSqlDatabase::removeDatabase(QStringLiteral("DB_BRINHOLT"));
}

QQmlApplicationEngine& PageHarness::engine()
{
    return *qmlEngine;
}

TranslationHandler& PageHarness::translations()
{
    return composition->translations();
}

BackEnd* PageHarness::backEnd() const
{
    return composition ? composition->backEnd() : nullptr;
}

DataSource* PageHarness::log() const
{
    return composition ? composition->log() : nullptr;
}

QQuickWindow* PageHarness::window() const
{
    if (!qmlEngine || qmlEngine->rootObjects().isEmpty())
        return nullptr;
    return qobject_cast<QQuickWindow*>(qmlEngine->rootObjects().first());
}

QObject* PageHarness::find(const QString& objectName, QObject* root) const
{
    if (!root)
        root = window() ? window()->contentItem() : nullptr;
    QObject* found = nullptr;
    QSet<QObject*> seen;
    collect(root, objectName, &found, seen);
    return found;
}

QQuickItem* PageHarness::item(const QString& objectName, QObject* root) const
{
    return qobject_cast<QQuickItem*>(find(objectName, root));
}

QObject* PageHarness::byId(QObject* inside, const QString& id)
{
    // A page is built from components of its own, each with the ids of its own document:
    // the page's document is asked first, then those of the components inside it, nearest
    // first. Documents of the controls' style are not ours, and their ids are not asked.
    QSet<QQmlContext*> asked;
    QSet<QObject*> seen;
    QList<QObject*> queue{inside};
    while (!queue.isEmpty()) {
        QObject* object = queue.takeFirst();
        if (!object || seen.contains(object))
            continue;
        seen.insert(object);
        QQmlContext* context = qmlContext(object);
        if (context && !asked.contains(context) && context->baseUrl().scheme() == QLatin1String("qrc")) {
            asked.insert(context);
            if (QObject* found = context->contextProperty(id).value<QObject*>())
                return found;
        }
        if (auto* item = qobject_cast<QQuickItem*>(object)) {
            const auto childItems = item->childItems();
            for (QQuickItem* child : childItems)
                queue << child;
        }
        queue << object->children();
    }
    return nullptr;
}

QVariant PageHarness::evaluate(QObject* scope, const QString& expression)
{
    QQmlExpression expr(qmlContext(scope), scope, expression);
    const QVariant value = expr.evaluate();
    if (expr.hasError())
        qWarning() << "test expression failed" << expression << expr.error().toString();
    return value;
}

QQuickItem* PageHarness::loadedPage() const
{
    QObject* loader = find(QStringLiteral("loader"));
    return loader ? loader->property("item").value<QQuickItem*>() : nullptr;
}

QVariant PageHarness::call(QObject* object, const char* function, const QVariantList& args)
{
    QVariant result;
    bool ok = false;
    switch (args.size()) {
    case 0:
        ok = QMetaObject::invokeMethod(object, function, Q_RETURN_ARG(QVariant, result));
        break;
    case 1:
        ok = QMetaObject::invokeMethod(object, function, Q_RETURN_ARG(QVariant, result), Q_ARG(QVariant, args.at(0)));
        break;
    case 2:
        ok = QMetaObject::invokeMethod(object, function, Q_RETURN_ARG(QVariant, result), Q_ARG(QVariant, args.at(0)),
                                       Q_ARG(QVariant, args.at(1)));
        break;
    default:
        ok = QMetaObject::invokeMethod(object, function, Q_RETURN_ARG(QVariant, result), Q_ARG(QVariant, args.at(0)),
                                       Q_ARG(QVariant, args.at(1)), Q_ARG(QVariant, args.at(2)));
        break;
    }
    if (!ok)
        qWarning() << "test call failed" << function;
    return result;
}

bool PageHarness::insertRow(const QString& table, qint64 time, double pressure, double elevation, double offset)
{
    return exec(QStringLiteral("INSERT INTO %1 (TIME, LON, LAT, COG, SOG, PRE, ELE, OFS) "
                               "VALUES (%2, 0, 0, 0, 0, %3, %4, %5)")
                        .arg(table)
                        .arg(time)
                        .arg(pressure, 0, 'f', 4)
                        .arg(elevation, 0, 'f', 4)
                        .arg(offset, 0, 'f', 4));
}

bool PageHarness::insertRows(const QString& table, qint64 from, qint64 to, int step, double pressure)
{
    QSqlDatabase db = testDatabase(dataFolder.filePath(QStringLiteral("brinholt.db")));
    db.transaction();
    bool ok = true;
    for (qint64 time = from; time <= to; time += step)
        ok = insertRow(table, time, pressure) && ok;
    db.commit();
    return ok;
}

bool PageHarness::exec(const QString& statement)
{
    QSqlQuery query(testDatabase(dataFolder.filePath(QStringLiteral("brinholt.db"))));
    return query.exec(statement);
}

int PageHarness::rowCount(const QString& table)
{
    return TestDatabase::rowCount(testDatabase(dataFolder.filePath(QStringLiteral("brinholt.db"))), table);
}

void PageHarness::sample(qint64 secsSinceEpoch, double hPa)
{
    Clock::setFixedSecsSinceEpoch(secsSinceEpoch);
    backEnd()->setCurrentPressure(hPa, Serial);
    backEnd()->slot_timerData();
}

void PageHarness::sampleWithoutPressure(qint64 secsSinceEpoch)
{
    Clock::setFixedSecsSinceEpoch(secsSinceEpoch);
    backEnd()->setCurrentPressure(-2000.0, Serial);
    backEnd()->slot_timerData();
}

QObject* PageHarness::chart() const
{
    return find(QStringLiteral("chartPressure"));
}

int PageHarness::seriesCount() const
{
    QObject* view = chart();
    return view ? view->property("count").toInt() : -1;
}

QtCharts::QXYSeries* PageHarness::series(int index) const
{
    QObject* view = chart();
    if (!view)
        return nullptr;
    const QVariant value = evaluate(view, QStringLiteral("series(%1)").arg(index));
    return qobject_cast<QtCharts::QXYSeries*>(value.value<QObject*>());
}

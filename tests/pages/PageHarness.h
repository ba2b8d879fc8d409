// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/TestDataFolder.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QUrl>
#include <QtCore/QVariant>
#include <QtCore/QtMessageHandler>

#include <memory>

class BackEnd;
class Composition;
class DataSource;
class QQmlApplicationEngine;
class QQuickItem;
class QQuickView;
class QQuickWindow;
class TranslationHandler;
namespace QtCharts {
class QAbstractSeries;
class QXYSeries;
}

// The main page loaded for real, over a real BackEnd and DataSource in a fresh data folder,
// as start-up does it. Besides:
// - links the pages open are caught here and never reach a browser;
// - the sampling tick is held (tests drive it with sample()), unless liveTick is asked for;
// - every message is recorded, so that a test can fail on any warning.
class PageHarness : public QObject
{
    Q_OBJECT

public:
    explicit PageHarness(bool liveTick = false);
    ~PageHarness() override;

    TestDataFolder& folder() { return dataFolder; }
    // Written straight into the settings file; before start() this is what the first read sees.
    void writeSetting(const QString& key, const QVariant& value);

    // Selects the language and loads the main page, as start-up does; false if the page did
    // not come up.
    bool start(bool show = true, const QString& language = QStringLiteral("en"));
    void stop();

    QQmlApplicationEngine& engine();
    TranslationHandler& translations();
    BackEnd* backEnd() const;
    DataSource* log() const;
    QQuickWindow* window() const;

    // Finds an object by objectName anywhere under `root` (the window's content if null).
    QObject* find(const QString& objectName, QObject* root = nullptr) const;
    QQuickItem* item(const QString& objectName, QObject* root = nullptr) const;
    // An object by its id, in the document that `inside` belongs to or in those of the
    // components it is built from.
    static QObject* byId(QObject* inside, const QString& id);
    // Evaluates `expression` in the document of `scope`, with `scope` as this.
    static QVariant evaluate(QObject* scope, const QString& expression);
    QQuickItem* loadedPage() const;
    // Invokes a function of a page with the given arguments, as the page would call it.
    static QVariant call(QObject* object, const char* function, const QVariantList& args = {});

    // The log. Rows go in through a connection of the test's own.
    bool insertRow(const QString& table, qint64 time, double pressure, double elevation = 0.0, double offset = 0.0);
    bool insertRows(const QString& table, qint64 from, qint64 to, int step, double pressure);
    bool exec(const QString& statement);
    int rowCount(const QString& table);

    // One tick at the given second, with the serial source reading `hPa` (or none).
    void sample(qint64 secsSinceEpoch, double hPa);
    void sampleWithoutPressure(qint64 secsSinceEpoch);

    // Chart access.
    QObject* chart() const;
    int seriesCount() const;
    QtCharts::QXYSeries* series(int index) const;

    // Links the pages asked to open.
    QList<QUrl> openedUrls() const { return urls; }

    // Warnings of any kind and page logs that are not among the page's own wordings, since
    // construction or the last clearMessages().
    QStringList unexpectedMessages() const;
    QStringList messages() const;
    void clearMessages();

public slots:
    void openUrl(const QUrl& url);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& message);

    struct Message
    {
        QtMsgType type;
        QString category;
        QString text;
    };

    bool liveTick = false;
    TestDataFolder dataFolder;
    std::unique_ptr<QQmlApplicationEngine> qmlEngine;
    std::unique_ptr<Composition> composition;
    QList<QUrl> urls;
    QList<Message> recorded;
    QtMessageHandler previousHandler = nullptr;
};

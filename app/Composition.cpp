// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Composition.h"

#include "app/BackEnd.h"
#include "app/StormShading.h"
#include "app/TranslationHandler.h"
#include "log/DataSource.h"

#include <QtQml/QQmlApplicationEngine>
#include <QtQml/QQmlContext>
#include <QtQml/qqml.h>
#include <QtQuick/QQuickView>
#include <QtQuickControls2/QQuickStyle>

const QUrl Composition::MainPage(QStringLiteral("qrc:/main"));

void Composition::registerTypes()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    qmlRegisterType<BackEnd>("backend", 1, 0, "BackEnd");
    qmlRegisterType<StormShading>("backend", 1, 0, "StormShading");
    qmlRegisterSingletonType(QUrl(QStringLiteral("qrc:/Theme.qml")), "backend", 1, 0, "Theme");
    QQuickStyle::setStyle(QStringLiteral("Material"));
}

Composition::Composition(QQmlApplicationEngine& engine)
    : engine(engine)
    , translationHandler(new TranslationHandler(&engine))
{
    engine.rootContext()->setContextProperty(QStringLiteral("translateHandler"), translationHandler.get());
}

Composition::~Composition()
{
    tearDown();
    view.reset();
    translationHandler.reset();
}

void Composition::build()
{
    // Never shown: the visible window is the main page's. Its root context is the engine's.
    view.reset(new QQuickView(&engine, nullptr));
    view->setResizeMode(QQuickView::SizeRootObjectToView);
    back = new BackEnd(&engine);
    backend = back;
    view->rootContext()->setContextProperty(QStringLiteral("backend"), back);
    source = new DataSource(view.get(), nullptr);
    dataSource = source;
    view->rootContext()->setContextProperty(QStringLiteral("dataSource"), source);
}

void Composition::saveShownPage()
{
    const QList<QObject*> roots = engine.rootObjects();
    if (!roots.isEmpty())
        QMetaObject::invokeMethod(roots.first(), "saveShownPage");
}

void Composition::load()
{
    engine.load(MainPage);
}

void Composition::tearDown()
{
    // Departs on purpose from the plain order of the end, in which BackEnd goes before the
    // engine destroys the page on show: that page's edits were lost, as it then found no
    // back end to save them to. It saves first, as leaving it would, but restarts nothing:
    // no receiver or port is opened while the program stops.
    if (back)
        saveShownPage();
    if (source) {
        delete source;
        source = nullptr;
        dataSource = nullptr;
    }
    if (back) {
        delete back;
        back = nullptr;
        backend = nullptr;
    }
}

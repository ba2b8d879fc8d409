// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtCore/QUrl>

#include <memory>

class BackEnd;
class DataSource;
class QQmlApplicationEngine;
class QQuickView;
class TranslationHandler;

// Builds what the pages see, in start-up's order: the translation handler on the engine,
// a view that is never shown, BackEnd, DataSource and the three context properties. The
// application, the page harness and the main window test all build through here.
class Composition
{
public:
    static const QUrl MainPage;

    // The Quick Controls style and the QML types: once per process, before any engine.
    static void registerTypes();

    // Publishes a translation handler on `engine` as "translateHandler".
    explicit Composition(QQmlApplicationEngine& engine);
    // What shutdown does after the event loop: the log first, then BackEnd, then the view
    // and the translation handler. The engine is the caller's and goes last.
    ~Composition();

    Composition(const Composition&) = delete;
    Composition& operator=(const Composition&) = delete;

    TranslationHandler& translations() { return *translationHandler; }
    // BackEnd, which starts location, sensor, tick and receiver, then DataSource, each
    // published under its context name.
    void build();
    // Loads the main page into the engine.
    void load();
    // Has the page on show write its settings, as leaving it would, with nothing restarted.
    void saveShownPage();
    // Saves the page on show, then deletes DataSource, then BackEnd, and forgets both.
    void tearDown();

    BackEnd* backEnd() const { return back; }
    DataSource* log() const { return source; }

private:
    QQmlApplicationEngine& engine;
    std::unique_ptr<TranslationHandler> translationHandler;
    std::unique_ptr<QQuickView> view;
    BackEnd* back = nullptr;
    DataSource* source = nullptr;
};

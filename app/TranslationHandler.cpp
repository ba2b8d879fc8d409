// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TranslationHandler.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>
#include <QtQml/QQmlApplicationEngine>

namespace {
const char* emptyText(const QTranslator* translator)
{
    return translator->isEmpty() ? "true" : "false";
}
}

TranslationHandler::TranslationHandler(QQmlApplicationEngine* engine)
    : languageHandlerCatalogue(new QTranslator(this))
    , languageHandlerQt(new QTranslator(this))
    , languageHandlerQtBase(new QTranslator(this))
    , engine(engine)
{
}

QString TranslationHandler::getCurrentLanguage()
{
    return currentLanguage;
}

void TranslationHandler::removeTranslators()
{
    QCoreApplication::removeTranslator(languageHandlerQtBase);
    QCoreApplication::removeTranslator(languageHandlerQt);
    QCoreApplication::removeTranslator(languageHandlerCatalogue);
}

void TranslationHandler::selectLanguage(QString language)
{
    if (language == currentLanguage)
        return;

    if (language == QLatin1String("fr")) {
        if (currentLanguage != QLatin1String("none"))
            removeTranslators();
        QLocale::setDefault(QLocale(QStringLiteral("fr_FR")));
        currentLanguage = language;
        // Bare file names: the catalogues lie in the working directory, the data folder.
        languageHandlerCatalogue->load(QStringLiteral("Brinholt_fr_FR.qm"));
        languageHandlerQt->load(QStringLiteral("qt_fr.qm"));
        languageHandlerQtBase->load(QStringLiteral("qtbase_fr.qm"));
        qWarning().noquote() << "translator qtbase empty ?" << emptyText(languageHandlerQtBase);
        qWarning().noquote() << "translator qt empty ?" << emptyText(languageHandlerQt);
        qWarning().noquote() << "translator brinholt empty ?" << emptyText(languageHandlerCatalogue);
        // Installed last is asked first: our own catalogue wins.
        QCoreApplication::installTranslator(languageHandlerQt);
        QCoreApplication::installTranslator(languageHandlerQtBase);
        QCoreApplication::installTranslator(languageHandlerCatalogue);
        if (engine)
            engine->retranslate();
    } else if (language == QLatin1String("en")) {
        if (currentLanguage != QLatin1String("none"))
            removeTranslators();
        currentLanguage = language;
        QLocale::setDefault(QLocale(QStringLiteral("en_US")));
        languageHandlerCatalogue->load(QStringLiteral("Brinholt_en_US.qm"));
        QCoreApplication::installTranslator(languageHandlerCatalogue);
        if (engine)
            engine->retranslate();
    }

    emit languageChanged();
}

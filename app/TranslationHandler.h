// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>

class QQmlApplicationEngine;
class QTranslator;

// Swaps the English and French catalogues at run time and has the engine retranslate the
// live pages. The callers store the choice; this class touches no setting.
class TranslationHandler : public QObject
{
    Q_OBJECT

public:
    explicit TranslationHandler(QQmlApplicationEngine* engine);

    Q_INVOKABLE QString getCurrentLanguage();
    Q_INVOKABLE void selectLanguage(QString language);

signals:
    void languageChanged();

private:
    void removeTranslators();

    QTranslator* languageHandlerCatalogue = nullptr;
    QTranslator* languageHandlerQt = nullptr;
    QTranslator* languageHandlerQtBase = nullptr;
    QString currentLanguage = QStringLiteral("none");
    QQmlApplicationEngine* engine = nullptr;
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QCoreApplication>
#include <QtCore/QString>

// The watch page as a phone gets it: one self-contained document (markup, style and
// script, nothing fetched from elsewhere) from the application's resources, with the texts
// in the application's language and the state of the last tick written into it, so that it
// shows the barometer before its script has asked for anything.
class WatchDocument
{
    Q_DECLARE_TR_FUNCTIONS(WatchPage)

public:
    // Reads the document from the resources; main thread.
    WatchDocument();

    // Any thread: the page with `texts` (as texts() gives them) and `stateJson` in it.
    QByteArray page(const QByteArray& texts, const QByteArray& stateJson) const;

    // Main thread: every text of the page in the language the translators hold now, as a
    // JSON object, with the HTML language code under "lang".
    static QByteArray texts();

    const QByteArray& source() const { return document; }

private:
    QByteArray document;
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QByteArray>

// One answer of the watch page's server: status, body and the type of the body. The
// server adds the headers every answer carries.
struct WatchResponse
{
    int status = 200;
    QByteArray contentType = "text/plain; charset=utf-8";
    QByteArray body;
    // Named only on 405, where the methods allowed must be told.
    QByteArray allow;
    // A file name for a download, or empty for a page to show.
    QByteArray fileName;

    static WatchResponse text(int status, const QByteArray& message)
    {
        WatchResponse response;
        response.status = status;
        response.body = message + '\n';
        return response;
    }
};

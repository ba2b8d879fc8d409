// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QRandomGenerator>
#include <QtCore/QtGlobal>

// Ports for servers under test. Drawn at random rather than taken from the kernel, so
// that tests running side by side seldom reach for the same one.
class FreePort
{
public:
    FreePort() = delete;

    // A port from 20000 to 59999 that `isFree` accepts; 0 if none does in 200 draws.
    template <typename Probe>
    static quint16 find(Probe isFree)
    {
        for (int attempt = 0; attempt < 200; ++attempt) {
            const auto port = static_cast<quint16>(QRandomGenerator::global()->bounded(20000, 60000));
            if (isFree(port))
                return port;
        }
        return 0;
    }

    // A TCP port that no socket holds now on any interface.
    static quint16 tcp();
};

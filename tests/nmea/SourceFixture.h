// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/Nmea0183.h"
#include "nmea/NmeaItem.h"
#include "nmea/NmeaSourceSerial.h"
#include "tests/support/BackEndFixture.h"
#include "tests/support/NmeaTestKit.h"
#include "tests/support/PseudoTerminal.h"

// A BackEnd with no receiver of its own, and a receiver that stays on the test's thread
// with its codec made, so that a source under test runs in the test's event loop.
struct SourceFixture : BackEndFixture
{
    SourceFixture()
    {
        receiver.reset(new NmeaReceiver);
        receiver->slot_startReceiving();
    }
    ~SourceFixture()
    {
        // Sources are the receiver's children and withdraw their pressure as they go,
        // before the BackEnd does.
        receiver.reset();
    }
    NmeaItem* item(NmeaMessageType type) const { return receiver->getNmea()->item(type); }

    // Takes a serial source just opened on `terminal` past the two blocks it throws away,
    // each sent on its own; false if it is not past them.
    static bool passSkippedBlocks(PseudoTerminal& terminal, NmeaSourceSerial& source)
    {
        for (int block = 1; block <= 2; ++block) {
            terminal.writeBlock("skipped\r\n");
            QElapsedTimer timer;
            timer.start();
            while (source.getSkipCount() < block && timer.elapsed() < 5000)
                QTest::qWait(2);
        }
        return !source.isSkipStart();
    }

    std::unique_ptr<NmeaReceiver> receiver;
};

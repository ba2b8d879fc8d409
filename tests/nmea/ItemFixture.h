#pragma once

#include "NmeaTestKit.h"
#include "support/TestDataFolder.h"

// A BackEnd in its own data folder with no receiver, for item tests that read back what
// an item handed over.
struct ItemFixture
{
    ItemFixture()
    {
        NmeaTestKit::writeIni(NmeaTestKit::quietSettings());
        b.reset(new BackEnd);
    }
    TestDataFolder folder;
    std::unique_ptr<BackEnd> b;
};

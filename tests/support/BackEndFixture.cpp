// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/BackEndFixture.h"

#include "app/BackEnd.h"
#include "tests/support/NmeaTestKit.h"

BackEndFixture::BackEndFixture(const QVariantMap& extra)
{
    NmeaTestKit::writeIni(NmeaTestKit::quietSettingsWith(extra));
    b.reset(new BackEnd);
}

BackEndFixture::~BackEndFixture()
{
    b.reset();
    backend = nullptr;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/BackEndFixture.h"

#include "app/BackEnd.h"
#include "tests/support/NmeaTestKit.h"

BackEndFixture::BackEndFixture(const QVariantMap& extra)
{
    QVariantMap values = NmeaTestKit::quietSettings();
    for (auto it = extra.cbegin(); it != extra.cend(); ++it)
        values.insert(it.key(), it.value());
    NmeaTestKit::writeIni(values);
    b.reset(new BackEnd);
}

BackEndFixture::~BackEndFixture()
{
    b.reset();
    backend = nullptr;
}

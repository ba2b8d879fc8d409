// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/TestDataFolder.h"

#include <QtCore/QVariantMap>

#include <memory>

class BackEnd;

// A BackEnd in a fresh data folder whose settings make no receiver, with `extra` on top.
// It is deleted first and the global pointer cleared, before the folder goes.
struct BackEndFixture
{
    explicit BackEndFixture(const QVariantMap& extra = {});
    ~BackEndFixture();

    TestDataFolder folder;
    std::unique_ptr<BackEnd> b;
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/BackEnd.h"
#include "tests/support/BackEndFixture.h"
#include "tests/support/NmeaTestKit.h"

// A BackEnd in its own data folder with no receiver, for item tests that read back what
// an item handed over.
using ItemFixture = BackEndFixture;

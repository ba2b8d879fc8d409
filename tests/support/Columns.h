// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtTest/QTest>

// Declares the columns of a data-driven test in one statement, the types in the order of
// the names: Columns::add<QString, bool>("text", "ok").
struct Columns
{
    template <typename... Types, typename... Names>
    static void add(const Names&... names)
    {
        static_assert(sizeof...(Types) == sizeof...(Names), "one name for each column type");
        (QTest::addColumn<Types>(names), ...);
    }
};

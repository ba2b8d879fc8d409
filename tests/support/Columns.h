// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtTest/QTest>

#include <initializer_list>
#include <utility>

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

    // One int column and its rows, each a name and a value:
    // Columns::ints("theme", {{"light", 0}, {"dark", 1}}).
    static void ints(const char* name, std::initializer_list<std::pair<const char*, int>> rows)
    {
        QTest::addColumn<int>(name);
        for (const auto& [row, value] : rows)
            QTest::newRow(row) << value;
    }
};

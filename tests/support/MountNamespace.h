// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtTest/QTest>

// Runs a test function again, in a new process of the same executable, inside a private
// mount namespace with a small tmpfs of its own, so that a full or read-only disk can be
// made without touching the machine's file systems.
class MountNamespace
{
public:
    MountNamespace() = delete;

    // In the process that run() started: the folder where the tmpfs is mounted. Empty
    // elsewhere. Aborts if the variable is set but the namespace is not private.
    static QString folder();

    // Runs `testFunction` of this executable in a new mount namespace with a tmpfs of
    // `sizeKb` kilobytes mounted on a fresh folder. True if the child passed; `report` gets
    // its output, or why no namespace could be made.
    static bool run(const QString& testFunction, int sizeKb, QString* report, int timeoutMs = 120000);
};

// At the head of a test whose body must run on a small private tmpfs: outside, it runs
// the body there and reports the child's result as this test's.
#define BRINHOLT_ON_PRIVATE_TMPFS(sizeKb)                                                              \
    do {                                                                                              \
        if (MountNamespace::folder().isEmpty()) {                                                     \
            QString report_;                                                                          \
            const bool passed_ = MountNamespace::run(QString::fromLatin1(QTest::currentTestFunction()), \
                                                     (sizeKb), &report_);                             \
            QVERIFY2(passed_, qPrintable(report_));                                                   \
            return;                                                                                   \
        }                                                                                             \
    } while (false)

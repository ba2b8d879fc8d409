// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtTest/QTest>

// Runs a test function again, in a new process of the same executable, inside a private
// network namespace that nothing leaves: loopback up and a veth pair, v0 with 198.18.0.1/24
// and v1 with 198.18.0.2/24, both ends in the namespace. Broadcasts sent there reach a
// listener in the same namespace and no real interface.
class NetworkNamespace
{
public:
    NetworkNamespace() = delete;

    // True in the process that run() started. It first makes sure that this really is a
    // namespace of its own with none but test addresses, and aborts if not; then it waits
    // for the links that are up to have carrier and their IPv6 link-local addresses.
    static bool inside();

    // Runs `testFunction` (with ":tag" for one row of a data-driven test) of this executable
    // in a new namespace; `extraSetup` is shell run there after the pair is made. True if the
    // child passed; `report` gets its output, or why no namespace could be made.
    static bool run(const QString& testFunction, QString* report, const QString& extraSetup = QString(),
                    int timeoutMs = 120000);
};

// At the head of a test whose body must run in a private network namespace: outside, it
// runs the body there and reports the child's result as this test's.
#define BRINHOLT_IN_PRIVATE_NETWORK(extraSetup)                                                        \
    do {                                                                                              \
        if (!NetworkNamespace::inside()) {                                                            \
            QString function_ = QString::fromLatin1(QTest::currentTestFunction());                    \
            if (QTest::currentDataTag())                                                              \
                function_ += QLatin1Char(':') + QString::fromLocal8Bit(QTest::currentDataTag());      \
            QString report_;                                                                          \
            const bool passed_ = NetworkNamespace::run(function_, &report_, extraSetup);              \
            QVERIFY2(passed_, qPrintable(report_));                                                   \
            return;                                                                                   \
        }                                                                                             \
    } while (false)

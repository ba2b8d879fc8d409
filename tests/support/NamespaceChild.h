// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

// Runs one test function of this executable again, in a new process that unshare(1) puts
// in namespaces of its own. A shell runs `setup` first and then the test; a setup that
// fails must exit with 97. The child passes only if its one function passed and nothing
// was skipped.
class NamespaceChild
{
public:
    NamespaceChild() = delete;

    // `kind` is the unshare option's letter ("m" for mounts, "n" for the network) and
    // `what` names the namespace in reports. `environment` holds NAME=value pairs added
    // to the child's. True if the child passed; `report` gets its output, or why no
    // namespace could be made.
    static bool run(char kind, const QString& what, const QString& setup, const QStringList& environment,
                    const QString& testFunction, int timeoutMs, QString* report);
};

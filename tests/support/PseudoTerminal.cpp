// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/PseudoTerminal.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QThread>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace {

void makeRaw(int fd)
{
    termios settings{};
    if (tcgetattr(fd, &settings) == 0) {
        cfmakeraw(&settings);
        tcsetattr(fd, TCSANOW, &settings);
    }
}

// How many bytes wait in the terminal for its reader; -1 if that cannot be told.
int queued(int fd)
{
    int count = 0;
    return fd >= 0 && ioctl(fd, FIONREAD, &count) == 0 ? count : -1;
}

} // namespace

PseudoTerminal::PseudoTerminal(const QString& linkPath)
    : link(linkPath)
{
}

PseudoTerminal::~PseudoTerminal()
{
    close();
    if (!link.isEmpty())
        QFile::remove(link);
}

bool PseudoTerminal::open()
{
    close();
    master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (master < 0)
        return false;
    if (grantpt(master) != 0 || unlockpt(master) != 0) {
        close();
        return false;
    }
    terminal = QString::fromLocal8Bit(ptsname(master));
    hold = ::open(ptsname(master), O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (hold >= 0)
        makeRaw(hold);
    makeRaw(master);
    if (!link.isEmpty()) {
        QFile::remove(link);
        QFile::link(terminal, link);
    }
    return true;
}

QString PseudoTerminal::path() const
{
    return link.isEmpty() ? terminal : link;
}

bool PseudoTerminal::write(const QByteArray& bytes)
{
    if (master < 0)
        return false;
    return ::write(master, bytes.constData(), static_cast<size_t>(bytes.size())) == bytes.size();
}

bool PseudoTerminal::writeBlock(const QByteArray& bytes, int timeoutMs)
{
    // The kernel hands a write on to the reader's side in pieces; on a busy machine a
    // reader woken early would see one write as several blocks.
    const int before = queued(hold);
    if (before < 0 || !write(bytes))
        return false;
    QElapsedTimer timer;
    timer.start();
    while (queued(hold) < before + bytes.size()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        QThread::usleep(200);
    }
    return true;
}

bool PseudoTerminal::writeAll(const QByteArray& bytes, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    int done = 0;
    while (master >= 0 && done < bytes.size() && timer.elapsed() < timeoutMs) {
        const ssize_t n = ::write(master, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (n > 0)
            done += static_cast<int>(n);
        else
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return done == bytes.size();
}

QByteArray PseudoTerminal::readAvailable()
{
    QByteArray bytes;
    if (master < 0)
        return bytes;
    char chunk[4096];
    for (;;) {
        const ssize_t n = ::read(master, chunk, sizeof chunk);
        if (n <= 0)
            break;
        bytes.append(chunk, static_cast<int>(n));
    }
    return bytes;
}

QByteArray PseudoTerminal::readUntil(const QByteArray& marker, int timeoutMs)
{
    QByteArray bytes;
    QElapsedTimer timer;
    timer.start();
    while (!bytes.contains(marker) && timer.elapsed() < timeoutMs) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        bytes += readAvailable();
        QThread::msleep(5);
    }
    return bytes;
}

void PseudoTerminal::close()
{
    // An unplugged device's name goes with it. Left behind, the link would lead to the
    // next terminal that any process opens under the same number.
    if (!link.isEmpty())
        QFile::remove(link);
    if (hold >= 0)
        ::close(hold);
    hold = -1;
    if (master >= 0)
        ::close(master);
    master = -1;
}

bool PseudoTerminal::reopen()
{
    close();
    return open();
}

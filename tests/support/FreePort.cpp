// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/FreePort.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

quint16 FreePort::tcp()
{
    return find([](quint16 port) {
        const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_ANY);
        const bool free = ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
        ::close(fd);
        return free;
    });
}

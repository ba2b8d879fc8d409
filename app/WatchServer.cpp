// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WatchServer.h"

#include "util/Clock.h"

#include <microhttpd.h>

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// Every answer says the same of itself: nothing to keep, nothing to guess, and nothing to
// load from anywhere but this server.
const char* const SecurityPolicy =
        "default-src 'none'; script-src 'unsafe-inline'; style-src 'unsafe-inline'; img-src 'self' data:; "
        "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

QByteArray addressOf(MHD_Connection* connection)
{
    const MHD_ConnectionInfo* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CLIENT_ADDRESS);
    if (!info || !info->client_addr)
        return QByteArray();
    char text[INET6_ADDRSTRLEN] = {};
    const sockaddr* address = info->client_addr;
    if (address->sa_family == AF_INET)
        inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in*>(address)->sin_addr, text, sizeof text);
    else if (address->sa_family == AF_INET6)
        inet_ntop(AF_INET6, &reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr, text, sizeof text);
    return QByteArray(text);
}

MHD_Result send(MHD_Connection* connection, const WatchResponse& answer)
{
    MHD_Response* response = MHD_create_response_from_buffer(size_t(answer.body.size()),
                                                             const_cast<char*>(answer.body.constData()),
                                                             MHD_RESPMEM_MUST_COPY);
    if (!response)
        return MHD_NO;
    MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, answer.contentType.constData());
    MHD_add_response_header(response, MHD_HTTP_HEADER_CACHE_CONTROL, "no-store");
    MHD_add_response_header(response, "X-Content-Type-Options", "nosniff");
    MHD_add_response_header(response, "Content-Security-Policy", SecurityPolicy);
    MHD_add_response_header(response, "Referrer-Policy", "no-referrer");
    if (!answer.allow.isEmpty())
        MHD_add_response_header(response, MHD_HTTP_HEADER_ALLOW, answer.allow.constData());
    if (!answer.fileName.isEmpty()) {
        const QByteArray disposition = "inline; filename=\"" + answer.fileName + '"';
        MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_DISPOSITION, disposition.constData());
    }
    const MHD_Result queued = MHD_queue_response(connection, unsigned(answer.status), response);
    MHD_destroy_response(response);
    return queued;
}

// A socket on every interface, made here rather than by the library so that a port in use
// can be told from any other failure.
int listenOn(quint16 port, int& error)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0) {
        error = errno;
        return -1;
    }
    const int yes = 1;
    ::setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_ANY);
    if (::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 || ::listen(fd, 64) != 0) {
        error = errno;
        ::close(fd);
        return -1;
    }
    return fd;
}

} // namespace

// The library's callbacks, on its threads.
struct WatchServer::Callbacks
{
    static MHD_Result admit(void* cls, const sockaddr*, socklen_t)
    {
        const auto* server = static_cast<const WatchServer*>(cls);
        return server->open.load() < server->bounds.clients ? MHD_YES : MHD_NO;
    }

    static void notify(void* cls, MHD_Connection*, void**, MHD_ConnectionNotificationCode code)
    {
        auto* server = static_cast<WatchServer*>(cls);
        if (code == MHD_CONNECTION_NOTIFY_STARTED)
            ++server->open;
        else if (code == MHD_CONNECTION_NOTIFY_CLOSED)
            --server->open;
    }

    static MHD_Result answer(void* cls, MHD_Connection* connection, const char* url, const char* method,
                             const char*, const char*, size_t* uploadSize, void** requestState)
    {
        auto* server = static_cast<WatchServer*>(cls);
        const QByteArray verb(method);
        const bool readOnly = verb == MHD_HTTP_METHOD_GET || verb == MHD_HTTP_METHOD_HEAD;
        // The first call comes with the headers. Anything but GET and HEAD is answered there,
        // before a byte of its body is read, and its connection closed after the answer.
        static int headersSeen;
        if (!*requestState) {
            *requestState = &headersSeen;
            server->noteClient(addressOf(connection));
            if (!readOnly) {
                WatchResponse refused = WatchResponse::text(405, "Only GET and HEAD are served here.");
                refused.allow = "GET, HEAD";
                return send(connection, refused);
            }
            // GET and HEAD wait for the end of the request: answered sooner, the library
            // could not keep the connection for the phone's next question.
            return MHD_YES;
        }
        // A body sent with a GET is let go unread.
        if (*uploadSize != 0 || !readOnly) {
            *uploadSize = 0;
            return MHD_YES;
        }
        if (MHD_get_connection_values(connection, MHD_HEADER_KIND, nullptr, nullptr) > server->bounds.headers)
            return send(connection, WatchResponse::text(431, "Too many header fields."));
        return send(connection, server->handler(verb, QByteArray(url)));
    }
};

WatchServer::WatchServer(Handler handler)
    : WatchServer(std::move(handler), Limits())
{
}

WatchServer::WatchServer(Handler handler, const Limits& limits)
    : handler(std::move(handler))
    , bounds(limits)
{
}

WatchServer::~WatchServer()
{
    stop();
}

bool WatchServer::start(quint16 port)
{
    stop();
    listenPort = port;
    failure.clear();
    int error = 0;
    const int fd = listenOn(port, error);
    if (fd < 0) {
        current = error == EADDRINUSE ? State::InUse : State::Failed;
        failure = QString::fromLocal8Bit(std::strerror(error));
        return false;
    }
    // The library's own bound sits above ours: at its bound it stops accepting and a client
    // would hang unanswered, where ours closes the connection at once. Without the channel
    // between its threads, an ended connection would be counted, and its thread kept, until
    // the next client came.
    daemon = MHD_start_daemon(
            MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_THREAD_PER_CONNECTION | MHD_USE_POLL | MHD_USE_ITC, 0,
            &Callbacks::admit,
            this, &Callbacks::answer, this, MHD_OPTION_LISTEN_SOCKET, MHD_socket(fd), MHD_OPTION_CONNECTION_LIMIT,
            unsigned(bounds.clients * 4), MHD_OPTION_PER_IP_CONNECTION_LIMIT, unsigned(bounds.clientsPerAddress),
            MHD_OPTION_CONNECTION_MEMORY_LIMIT, size_t(bounds.requestBytes), MHD_OPTION_CONNECTION_TIMEOUT,
            unsigned(bounds.idleSeconds), MHD_OPTION_NOTIFY_CONNECTION, &Callbacks::notify, this,
            MHD_OPTION_THREAD_STACK_SIZE, size_t(1024 * 1024), MHD_OPTION_STRICT_FOR_CLIENT, 1, MHD_OPTION_END);
    if (!daemon) {
        ::close(fd);
        current = State::Failed;
        failure = QStringLiteral("the HTTP server did not start");
        return false;
    }
    current = State::Serving;
    return true;
}

void WatchServer::stop()
{
    if (daemon) {
        MHD_stop_daemon(daemon);
        daemon = nullptr;
    }
    current = State::Off;
    std::lock_guard<std::mutex> guard(clientsLock);
    lastSeen.clear();
}

QString WatchServer::error() const
{
    return failure;
}

void WatchServer::noteClient(const QByteArray& address)
{
    const qint64 now = Clock::monotonicMs();
    std::lock_guard<std::mutex> guard(clientsLock);
    lastSeen.insert(address, now);
    // Kept small: addresses silent for a minute are forgotten.
    for (auto it = lastSeen.begin(); it != lastSeen.end();)
        it = now - it.value() > 60000 ? lastSeen.erase(it) : std::next(it);
}

int WatchServer::recentClients(qint64 windowMs) const
{
    const qint64 now = Clock::monotonicMs();
    std::lock_guard<std::mutex> guard(clientsLock);
    int count = 0;
    for (auto it = lastSeen.cbegin(); it != lastSeen.cend(); ++it)
        count += now - it.value() <= windowMs ? 1 : 0;
    return count;
}

#include "tests/page/NetworkWatch.h"

#include <QHostAddress>
#include <QMutex>

#include <arpa/inet.h>
#include <dlfcn.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <utility>

namespace
{
struct Contacts {
    QMutex mutex;
    QList<QByteArray> list;
};

Contacts &contacts()
{
    static auto *all = new Contacts; // threads of the engine outlive what is static
    return *all;
}

void note(const QByteArray &contact)
{
    const QMutexLocker locker(&contacts().mutex);
    contacts().list.append(contact);
}

void note(const sockaddr *address)
{
    if (!address || (address->sa_family != AF_INET && address->sa_family != AF_INET6))
        return;
    const quint16 port = address->sa_family == AF_INET
                             ? reinterpret_cast<const sockaddr_in *>(address)->sin_port
                             : reinterpret_cast<const sockaddr_in6 *>(address)->sin6_port;
    note(QHostAddress(address).toString().toUtf8() + ':' + QByteArray::number(ntohs(port)));
}

template <typename Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}
} // namespace

QList<QByteArray> NetworkWatch::takeContacts()
{
    const QMutexLocker locker(&contacts().mutex);
    return std::exchange(contacts().list, {});
}

// The program comes before the C library where a library looks for these.

extern "C" {
[[gnu::visibility("default")]] int connect(int socket, const sockaddr *address, socklen_t length)
{
    static auto *const real = next<decltype(connect)>("connect");
    note(address);
    return real(socket, address, length);
}

[[gnu::visibility("default")]] ssize_t sendto(int socket, const void *data, size_t size, int flags,
                                              const sockaddr *address, socklen_t length)
{
    static auto *const real = next<decltype(sendto)>("sendto");
    note(address);
    return real(socket, data, size, flags, address, length);
}

[[gnu::visibility("default")]] ssize_t sendmsg(int socket, const msghdr *message, int flags)
{
    static auto *const real = next<decltype(sendmsg)>("sendmsg");
    note(static_cast<const sockaddr *>(message->msg_name));
    return real(socket, message, flags);
}

/// No name is known here, and no server is asked for one.
[[gnu::visibility("default")]] int getaddrinfo(const char *name, const char *, const addrinfo *,
                                               addrinfo **)
{
    note("name " + QByteArray(name));
    return EAI_NONAME;
}
}

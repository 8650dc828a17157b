// Sends the request on its standard input to an HTTP server of this machine and writes the body of
// the reply on its standard output: send-request URL MILLISECONDS [CONTENT-TYPE]
// A program of its own, so that no server can harm the resident one, and the libraries for HTTP
// are only there while they are needed.
#include "App/Platform/Linux/Http/RequestExit.h"

#include <arpa/inet.h>
#include <curl/curl.h>
#include <linux/close_range.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace {

constexpr rlim_t mostMemory = rlim_t { 512 } * 1024 * 1024; // Bytes

template <typename Handle, void (*cleanup)(Handle*)>
struct Deleter {
    void operator()(Handle* handle) const { cleanup(handle); }
};
using Easy = std::unique_ptr<CURL, Deleter<CURL, curl_easy_cleanup>>;
using Address = std::unique_ptr<CURLU, Deleter<CURLU, curl_url_cleanup>>;
using Headers = std::unique_ptr<curl_slist, Deleter<curl_slist, curl_slist_free_all>>;

void limitItself()
{
    close_range(STDERR_FILENO + 1, ~0U, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const rlimit noCore { 0, 0 };
    setrlimit(RLIMIT_CORE, &noCore);
// The address sanitizer sets terabytes of addresses aside and cannot live with that limit.
#ifndef __SANITIZE_ADDRESS__
    const rlimit memory { mostMemory, mostMemory };
    setrlimit(RLIMIT_AS, &memory);
#endif
}

std::string readInput()
{
    std::string bytes;
    char piece[64 * 1024];
    for (ssize_t count = read(STDIN_FILENO, piece, sizeof piece); count > 0;
         count = read(STDIN_FILENO, piece, sizeof piece))
        bytes.append(piece, static_cast<std::size_t>(count));
    return bytes;
}

bool isLoopback(const in_addr& address)
{
    return ntohl(address.s_addr) >> IN_CLASSA_NSHIFT == IN_LOOPBACKNET;
}

bool isLoopback(const in6_addr& address)
{
    return IN6_IS_ADDR_LOOPBACK(&address);
}

bool isLoopback(const sockaddr& address)
{
    if (address.sa_family == AF_INET)
        return isLoopback(reinterpret_cast<const sockaddr_in&>(address).sin_addr);
    return address.sa_family == AF_INET6
        && isLoopback(reinterpret_cast<const sockaddr_in6&>(address).sin6_addr);
}

template <typename Number>
bool isLoopback(int family, const std::string& host)
{
    Number number {};
    return inet_pton(family, host.c_str(), &number) == 1 && isLoopback(number);
}

std::string part(CURLU* address, CURLUPart which)
{
    char* text = nullptr;
    if (curl_url_get(address, which, &text, 0) != CURLUE_OK)
        return {};
    const std::string copy(text);
    curl_free(text);
    return copy;
}

// By the name of this machine or by a number of it; no other name is asked for anywhere.
bool isHere(const char* url)
{
    const Address address(curl_url());
    if (curl_url_set(address.get(), CURLUPART_URL, url, 0) != CURLUE_OK
        || part(address.get(), CURLUPART_SCHEME) != "http")
        return false;
    std::string host = part(address.get(), CURLUPART_HOST);
    if (host.starts_with('[') && host.ends_with(']'))
        host = host.substr(1, host.size() - 2);
    return host == "localhost" || isLoopback<in_addr>(AF_INET, host)
        || isLoopback<in6_addr>(AF_INET6, host);
}

// Whatever a name or a setting may lead to, no packet goes to another machine.
curl_socket_t openSocket(void*, curlsocktype, curl_sockaddr* address)
{
    if (!isLoopback(address->addr))
        return CURL_SOCKET_BAD;
    return socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

struct Reply {
    long long size = 0;
    bool isTooLarge = false;
    bool hasWholeHead = false;
};

// The library takes a head that breaks off for a whole one. It also brings what may follow the
// body, which has no empty line behind it.
std::size_t takeHead(char* line, std::size_t, std::size_t size, void* user)
{
    auto& reply = *static_cast<Reply*>(user);
    if (std::string_view(line, size).starts_with("HTTP/"))
        reply.hasWholeHead = false;
    else if (size <= 2) // An empty line.
        reply.hasWholeHead = true;
    return size;
}

std::size_t takeBody(char* bytes, std::size_t, std::size_t size, void* user)
{
    auto& reply = *static_cast<Reply*>(user);
    reply.size += static_cast<long long>(size);
    reply.isTooLarge = reply.size > largestReply;
    return reply.isTooLarge ? 0 : std::fwrite(bytes, 1, size, stdout);
}

RequestExit exitOf(CURLcode code, const Reply& reply)
{
    if (reply.isTooLarge)
        return RequestExit::tooLarge;
    switch (code) {
    case CURLE_OK:
        return reply.hasWholeHead ? RequestExit::replied : RequestExit::networkConnectionLost;
    case CURLE_COULDNT_CONNECT:
        return RequestExit::cannotConnectToHost;
    case CURLE_COULDNT_RESOLVE_HOST:
        return RequestExit::cannotFindHost;
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
        return RequestExit::networkConnectionLost;
    case CURLE_OPERATION_TIMEDOUT:
        return RequestExit::timedOut;
    case CURLE_FILESIZE_EXCEEDED:
        return RequestExit::tooLarge;
    case CURLE_BAD_CONTENT_ENCODING:
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_WEIRD_SERVER_REPLY:
        return RequestExit::notHttp;
    default:
        return RequestExit::failed;
    }
}

// What leads elsewhere is a reply like any other.
void prepare(CURL* easy, const char* url, long timeout, Reply& reply)
{
    curl_easy_setopt(easy, CURLOPT_URL, url);
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http");
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_PROXY, "");
    curl_easy_setopt(easy, CURLOPT_NOPROXY, "*");
    curl_easy_setopt(easy, CURLOPT_NETRC, long { CURL_NETRC_IGNORED });
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, openSocket);
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, timeout);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, curl_off_t { largestReply });
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, takeHead);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, &reply);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, takeBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &reply);
}

// Without asking first whether the server wants it all.
Headers post(CURL* easy, const std::string& body, const std::string& contentType)
{
    Headers headers(curl_slist_append(nullptr, ("Content-Type: " + contentType).c_str()));
    curl_slist_append(headers.get(), "Expect:");
    curl_easy_setopt(easy, CURLOPT_POST, 1L);
    curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    curl_easy_setopt(easy, CURLOPT_POSTFIELDS, body.data());
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers.get());
    return headers;
}

RequestExit send(const char* url, long timeout, const char* contentType)
{
    if (!isHere(url))
        return RequestExit::cannotFindHost;
    const Easy easy(curl_easy_init());
    if (!easy)
        return RequestExit::failed;
    Reply reply;
    prepare(easy.get(), url, timeout, reply);
    const std::string body = contentType ? readInput() : std::string();
    const Headers headers = contentType ? post(easy.get(), body, contentType) : Headers();
    const auto code = curl_easy_perform(easy.get());
    return std::fflush(stdout) == 0 ? exitOf(code, reply) : RequestExit::failed;
}

}

int main(int count, char** arguments)
{
    limitItself();
    const long timeout = count > 2 ? std::atol(arguments[2]) : 0;
    if (count < 3 || count > 4 || timeout <= 0) {
        std::fputs("send-request URL MILLISECONDS [CONTENT-TYPE]\n", stderr);
        return int(RequestExit::misused);
    }
    return int(send(arguments[1], timeout, count > 3 ? arguments[3] : nullptr));
}

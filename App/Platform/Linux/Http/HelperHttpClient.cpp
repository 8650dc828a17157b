#include "App/Platform/Linux/Http/HelperHttpClient.h"

#include "App/Platform/Linux/Http/HelperRequest.h"

#include <utility>

HelperHttpClient::HelperHttpClient(QString helper)
    : m_helper(std::move(helper))
{
}

void HelperHttpClient::send(
    const HttpRequest& request, QObject* waiter, std::function<void(HttpResult)> done)
{
    (new HelperRequest(waiter, std::move(done)))->start(m_helper, request);
}

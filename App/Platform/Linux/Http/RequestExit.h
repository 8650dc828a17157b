// Between the resident program and its helper that sends requests: how the helper ended.
#pragma once

enum class RequestExit {
    replied = 0, // The body is on the standard output, whatever its status.
    misused = 1,
    cannotConnectToHost = 10,
    cannotFindHost,
    networkConnectionLost,
    timedOut,
    tooLarge,
    notHttp,
    failed,
};

// Of a reply, in bytes.
constexpr long long largestReply = 64LL * 1024 * 1024;

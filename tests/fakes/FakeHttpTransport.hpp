#pragma once

#include "VeskPlatform/HttpTransport.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <deque>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

namespace vesk::test {

/// A server in memory: keeps the requests and answers each with what a test has put in line, or says for all.
class FakeHttpTransport : public HttpTransport {
public:
    std::vector<HttpRequest> requests;
    std::deque<HttpResponse> answers;
    /// Answers where the line is empty; without it, there is no connection.
    std::function<HttpResponse(const HttpRequest&)> serve;

    void answer(int status, std::string body) { answers.push_back({status, std::move(body)}); }

    HttpResponse send(const HttpRequest& request) override {
        const std::scoped_lock lock(mutex_);
        requests.push_back(request);
        if (!answers.empty()) {
            HttpResponse first = std::move(answers.front());
            answers.pop_front();
            return first;
        }
        if (serve) return serve(request);
        throw ErrorRecord("NSURLErrorDomain", -1004, "No connection to the server could be made.");
    }
    std::string standardText(int status) override { return "status " + std::to_string(status); }

private:
    std::mutex mutex_; // called from threads
};

} // namespace vesk::test

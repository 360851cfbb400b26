// What the application model needs of the world. A test hands in its own.

#pragma once

#include "sources/ServiceEndpoints.h"
#include "updates/QuireUpdateService.h"

#include <QString>

#include <chrono>
#include <functional>

namespace quire {

class Clock;
class Desktop;
class NetworkClient;

// A uniformly random length from zero to `maximum`, both included.
std::chrono::nanoseconds randomDelay(std::chrono::nanoseconds maximum);

// The references outlive the model and every job it started.
struct AppModelDependencies
{
    Clock &clock;
    NetworkClient &network;
    Desktop &desktop;
    ServiceEndpoints endpoints;
    std::function<std::chrono::nanoseconds(std::chrono::nanoseconds maximum)> jitter = randomDelay; // of retries
    QString userDefaultsFile = {}; // absolute; see UserDefaults
    RunningVersion runningVersion = {};
};

} // namespace quire

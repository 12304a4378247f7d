// A debug switch that is off beside a log level that is off.

#include <memory>

#include <spdlog/sinks/null_sink.h>
#include <spdlog/spdlog.h>

#include "bench.h"
#include "ut_Debug.h"

namespace bench {

void benchSwitches(Bench& bench) {
    constexpr unsigned int switchNumber = 2301;
    constexpr int checks = 16;
    const auto logger = std::make_shared<spdlog::logger>("bench", std::make_shared<spdlog::sinks::null_sink_mt>());
    logger->set_level(spdlog::level::info);
    spdlog::logger* const peer = hide(logger.get());
    const bool same = !utility::Debug::isDebugOn(switchNumber) && !peer->should_log(spdlog::level::debug);
    // Several checks in one call, so that the loop does not count.
    bench.row(
        {"Debug::isDebugOn, off", "spdlog should_log, off", 1.0, checks}, same,
        [](long) {
            for (int check = 0; check < checks; ++check)
                keep(utility::Debug::isDebugOn(switchNumber));
        },
        [&](long) {
            for (int check = 0; check < checks; ++check)
                keep(peer->should_log(spdlog::level::debug));
        });
}

} // namespace bench

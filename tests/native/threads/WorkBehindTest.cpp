#include <atomic>
#include <chrono>
#include <future>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "threads/WorkBehind.h"

namespace mip {
namespace {

constexpr std::size_t Plenty = 1 << 20;

TEST(WorkBehind, TellsEveryJobInTheOwnersThread) {
    WorkBehind work(3, Plenty);
    const auto owner = std::this_thread::get_id();
    std::vector<int> results(1000, 0);
    int told = 0;
    for (std::size_t i = 0; i < results.size(); ++i) {
        work.Add(
            100, [&results, i] { ++results[i]; },
            [&](const std::exception_ptr& failure) {
                EXPECT_FALSE(failure);
                EXPECT_EQ(std::this_thread::get_id(), owner);
                ++told;
            });
    }
    work.Finish();
    EXPECT_EQ(results, std::vector<int>(1000, 1));
    EXPECT_EQ(told, 1000);
}

TEST(WorkBehind, JobsRunSideBySideAndWaitForRoom) {
    WorkBehind work(2, Plenty);
    std::promise<void> bothRun;
    std::atomic<int> running = 0;
    const auto meet = [&, met = bothRun.get_future().share()] {
        if (++running == 2) {
            bothRun.set_value();
        }
        EXPECT_EQ(met.wait_for(std::chrono::seconds(10)), std::future_status::ready);
    };
    work.Add(1, meet, RethrowWhen);
    work.Add(1, meet, RethrowWhen);
    work.Finish();

    // The second large job has no room before the first one ends, which the owner's waiting brings about.
    int waits = 0;
    std::promise<void> release;
    work.WhileWaiting = [&] {
        if (++waits == 1) {
            release.set_value();
        }
    };
    std::atomic<int> largeJobs = 0;
    const auto large = [&, released = release.get_future().share()] {
        EXPECT_EQ(++largeJobs, 1);
        EXPECT_EQ(released.wait_for(std::chrono::seconds(10)), std::future_status::ready);
        --largeJobs;
    };
    work.Add(2 * Plenty, large, RethrowWhen);
    work.Add(Plenty, large, RethrowWhen);
    work.Finish();
}

TEST(WorkBehind, FailureReachesTheOwnerAndTheRestIsDropped) {
    std::atomic<int> begun = 0;
    std::promise<void> release;
    const std::jthread later([&] {  // nothing tells that the end has begun; the other jobs give it time, too
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        release.set_value();
    });
    {
        WorkBehind work(1, Plenty);
        work.Add(
            1, [] { throw std::runtime_error("full"); }, RethrowWhen);
        EXPECT_THROW(work.Finish(), std::runtime_error);
        const auto begin = [&, released = release.get_future().share()] {
            ++begun;
            released.wait();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        };
        for (int i = 0; i < 100; ++i) {
            work.Add(1, begin, RethrowWhen);
        }
    }
    EXPECT_LT(begun, 100);
}

}  // namespace
}  // namespace mip

#include "threads/WorkBehind.h"

#include <chrono>
#include <utility>

namespace mip {

namespace {

constexpr std::chrono::milliseconds WaitingPace{20};
constexpr std::size_t JobItself = 1024;  // bytes, so that jobs which hold nothing are bounded too

}  // namespace

WorkBehind::WorkBehind(unsigned threads, std::size_t byteLimit) : threadLimit_(threads), byteLimit_(byteLimit) {}

WorkBehind::~WorkBehind() {
    {
        const std::lock_guard lock(mutex_);
        isClosing_ = true;
    }
    taskCame_.notify_all();
}

void WorkBehind::Add(std::size_t bytes, Job job, Done done) {
    bytes += JobItself;
    TellUntil([&] { return unfinished_ == 0 || unfinishedBytes_ + bytes <= byteLimit_; });
    if (threads_.size() < threadLimit_) {
        threads_.emplace_back([this] { Work(); });
    }
    {
        const std::lock_guard lock(mutex_);
        waiting_.push_back({bytes, std::move(job), std::move(done), nullptr});
        ++unfinished_;
        unfinishedBytes_ += bytes;
    }
    taskCame_.notify_one();
}

void WorkBehind::Finish() {
    TellUntil([&] { return unfinished_ == 0; });
}

void WorkBehind::Work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        taskCame_.wait(lock, [&] { return isClosing_ || !waiting_.empty(); });
        if (isClosing_) {
            return;
        }
        Task task = std::move(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        try {
            task.Run();
        } catch (...) {
            task.Failure = std::current_exception();
        }
        task.Run = nullptr;  // with what it holds
        lock.lock();
        --unfinished_;
        unfinishedBytes_ -= task.Bytes;
        ended_.push_back(std::move(task));
        taskEnded_.notify_one();
    }
}

/// Tells what has ended until `reached`, which is asked under the lock, and nothing is left to tell.
void WorkBehind::TellUntil(const std::function<bool()>& reached) {
    for (;;) {
        TellEnded();
        {
            std::unique_lock lock(mutex_);
            if (ended_.empty() && reached()) {
                return;
            }
            taskEnded_.wait_for(lock, WaitingPace, [&] { return !ended_.empty(); });
        }
        if (WhileWaiting) {
            WhileWaiting();
        }
    }
}

void WorkBehind::TellEnded() {
    std::vector<Task> ended;
    {
        const std::lock_guard lock(mutex_);
        ended.swap(ended_);
    }
    for (const Task& task : ended) {
        task.Tell(task.Failure);
    }
}

}  // namespace mip

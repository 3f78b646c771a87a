#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace mip {

inline void RethrowWhen(const std::exception_ptr& failure) {
    if (failure) {
        std::rethrow_exception(failure);
    }
}

/// For writing files behind their reading: a third thread gained nothing, and what waits stays small beside the
/// program.
inline constexpr unsigned FileWriters = 2;
inline constexpr std::size_t BytesBehind = 4 * 1024 * 1024;

/// Jobs that run on threads of their own, behind the thread that owns this object and hands them over. Many small files
/// are written faster when the next ones are read or unpacked meanwhile.
///
/// What a job came to is told to the owner's thread during a later `Add` or `Finish`, in the order in which the jobs
/// end.
class WorkBehind {
  public:
    using Job = std::function<void()>;
    /// Takes null, or what the job threw; RethrowWhen throws it on.
    using Done = std::function<void(std::exception_ptr failure)>;

    /// At most `threads` threads, started as jobs come. `byteLimit` bounds the bytes that unfinished jobs hold; a
    /// larger job runs alone.
    WorkBehind(unsigned threads, std::size_t byteLimit);
    WorkBehind(const WorkBehind&) = delete;
    WorkBehind& operator=(const WorkBehind&) = delete;
    /// Drops the jobs that have not begun and waits for the others.
    ~WorkBehind();

    /// Hands over a job that holds that many bytes, waiting while there is no room for them. Throws what a `Done`
    /// throws.
    void Add(std::size_t bytes, Job job, Done done);
    /// Waits for every job. Throws what a `Done` throws.
    void Finish();

    /// Called now and then by the owner's thread while it waits.
    std::function<void()> WhileWaiting;

  private:
    struct Task {
        std::size_t Bytes = 0;
        Job Run;
        Done Tell;
        std::exception_ptr Failure;
    };

    void Work();
    void TellUntil(const std::function<bool()>& reached);
    void TellEnded();

    const unsigned threadLimit_;
    const std::size_t byteLimit_;

    std::mutex mutex_;
    std::condition_variable taskCame_;
    std::condition_variable taskEnded_;
    std::deque<Task> waiting_;
    std::vector<Task> ended_;
    std::size_t unfinished_ = 0;       ///< jobs that wait or run
    std::size_t unfinishedBytes_ = 0;  ///< what they hold
    bool isClosing_ = false;

    std::vector<std::jthread> threads_;
};

}  // namespace mip

#pragma once

#include <cstddef>
#include <string>

namespace mip {

/// How far a long piece of work has come: one line on standard error that is written over and over, and nothing at all
/// when that is no terminal.
class Progress {
  public:
    Progress(std::string what, std::size_t total);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// Wipes the line away.
    ~Progress();

    void Step();

  private:
    void Show(const std::string& line);

    std::string what_;
    std::size_t total_;
    std::size_t done_ = 0;
    bool isTerminal_;
};

}  // namespace mip

#pragma once

#include "catalogue/clsMDB.h"

namespace mip {

/// Changes that count together. What is not committed is rolled back at the end of the scope.
class Transaction {
  public:
    /// Throws PlatformError when none can be begun.
    explicit Transaction(clsMDB& database);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    /// Throws PlatformError; nothing of the transaction counts then.
    void Commit();

  private:
    clsMDB& database_;
    bool open_ = true;
};

}  // namespace mip

#include "catalogue/Transaction.h"

#include "platform/PlatformError.h"

namespace mip {

Transaction::Transaction(clsMDB& database) : database_(database) {
    database_.Pcls_MdbBeginTrans();
}

Transaction::~Transaction() {
    if (open_) {
        try {
            database_.Pcls_MdbRollback();
        } catch (const PlatformError& error) {
            // The engine drops an unfinished transaction when the database is opened again.
            database_.TrapLog().Trapped("rolling a transaction back", error);
        }
    }
}

void Transaction::Commit() {
    database_.Pcls_MdbCommitTrans();
    open_ = false;
}

}  // namespace mip

#include "platform/archive/EmbeddedArchives.h"
#include "tests/native/archive/ZipArchivesHost.h"

namespace mip {
namespace {

class EmbeddedArchivesHost : public ZipArchivesHost {
  public:
    mip::Archives& Archives() override { return archives_; }

  private:
    std::unique_ptr<ArchiveSystem> system_ = MakeTestSystem();
    CountingClock clock_;
    EmbeddedArchives archives_{*system_, clock_};
};

}  // namespace

std::unique_ptr<ArchivesHost> MakeArchivesHost() {
    return std::make_unique<EmbeddedArchivesHost>();
}

}  // namespace mip

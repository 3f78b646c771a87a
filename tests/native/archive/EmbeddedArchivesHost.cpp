#include "platform/archive/EmbeddedArchives.h"
#include "tests/native/archive/ZipArchivesHost.h"
#include "tests/native/fakes/FakeComputer.h"

namespace mip {
namespace {

class EmbeddedArchivesHost : public ZipArchivesHost {
  public:
    mip::Archives& Archives() override { return archives_; }

  private:
    Faults faults_;
    FakeClock clock_{faults_};
    EmbeddedArchives archives_{Computer->System(), clock_};
};

}  // namespace

std::unique_ptr<ArchivesHost> MakeArchivesHost() {
    return std::make_unique<EmbeddedArchivesHost>();
}

}  // namespace mip

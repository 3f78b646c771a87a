#include "platform/windows/ComApartment.h"

#include <windows.h>
#include <objbase.h>

#include "platform/windows/ComAutomation.h"

namespace mip {

ComApartment::ComApartment() {
    ThrowIfFailed(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE), "CoInitializeEx", L"");
}

ComApartment::~ComApartment() {
    CoUninitialize();
}

}  // namespace mip

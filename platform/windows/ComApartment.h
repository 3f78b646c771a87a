#pragma once

namespace mip {

/// Single-threaded COM apartment of the current thread, for as long as the object lives. Throws PlatformError with an
/// HRESULT when the thread already is in an apartment of another kind.
class ComApartment {
  public:
    ComApartment();
    ~ComApartment();
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
};

}  // namespace mip

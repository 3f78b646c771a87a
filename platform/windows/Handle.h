#pragma once

#include <utility>

#include <windows.h>

#include <shtypes.h>

namespace mip {

/// Owns one system resource. `Traits` gives its `Value` type, the `Invalid()` value and `Close(value)`. Closing keeps
/// the thread's last error, so that an error can be read after owners have gone.
template <typename Traits>
class Handle {
  public:
    using Value = typename Traits::Value;

    Handle() noexcept : value_(Traits::Invalid()) {}
    explicit Handle(Value value) noexcept : value_(value) {}
    Handle(Handle&& other) noexcept : value_(other.Release()) {}
    Handle& operator=(Handle&& other) noexcept {
        if (this != &other) {
            Reset(other.Release());
        }
        return *this;
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { Reset(); }

    explicit operator bool() const noexcept { return value_ != Traits::Invalid(); }
    Value Get() const noexcept { return value_; }
    Value Release() noexcept { return std::exchange(value_, Traits::Invalid()); }

    void Reset(Value value = Traits::Invalid()) noexcept {
        if (value_ != Traits::Invalid()) {
            const DWORD lastError = GetLastError();
            Traits::Close(value_);
            SetLastError(lastError);
        }
        value_ = value;
    }

    /// For calls that give the resource through an out-parameter; what was owned before is closed.
    Value* Receive() noexcept {
        Reset();
        return &value_;
    }

  private:
    Value value_;
};

struct FileHandleTraits {
    using Value = HANDLE;
    static Value Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Value value) noexcept { CloseHandle(value); }
};

/// Processes, threads, mutexes: kernel objects whose invalid value is null.
struct KernelHandleTraits {
    using Value = HANDLE;
    static Value Invalid() noexcept { return nullptr; }
    static void Close(Value value) noexcept { CloseHandle(value); }
};

struct FindHandleTraits {
    using Value = HANDLE;
    static Value Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Value value) noexcept { FindClose(value); }
};

struct RegistryKeyTraits {
    using Value = HKEY;
    static Value Invalid() noexcept { return nullptr; }
    static void Close(Value value) noexcept { RegCloseKey(value); }
};

struct LibraryTraits {
    using Value = HMODULE;
    static Value Invalid() noexcept { return nullptr; }
    static void Close(Value value) noexcept { FreeLibrary(value); }
};

/// Memory that a system call allocated with LocalAlloc; `T` is the pointer type.
template <typename T>
struct LocalMemoryTraits {
    using Value = T;
    static Value Invalid() noexcept { return nullptr; }
    static void Close(Value value) noexcept { LocalFree(value); }
};

/// Where something is in the shell's namespace, as the shell's calls give it.
struct ItemListTraits {
    using Value = LPITEMIDLIST;
    static Value Invalid() noexcept { return nullptr; }
    static void Close(Value value) noexcept { CoTaskMemFree(value); }
};

using FileHandle = Handle<FileHandleTraits>;
using KernelHandle = Handle<KernelHandleTraits>;
using FindHandle = Handle<FindHandleTraits>;
using RegistryKey = Handle<RegistryKeyTraits>;
using LibraryHandle = Handle<LibraryTraits>;
using ItemList = Handle<ItemListTraits>;
template <typename T>
using LocalMemory = Handle<LocalMemoryTraits<T>>;

}  // namespace mip

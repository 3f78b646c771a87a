#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace mip {

/// What an event carries: nothing, a number or a text.
using EventValue = std::variant<std::monostate, std::int32_t, std::wstring>;

/// A relay through which one part of the program signals the screens without knowing them.
class ClsEvent {
  public:
    /// A listener gets a copy of its own.
    using FormEvent = std::function<void(EventValue)>;

    void Listen(FormEvent listener) { listeners_.push_back(std::move(listener)); }

    /// Calls the listeners in the order in which they subscribed and returns when all have handled the event. One that
    /// subscribes meanwhile hears the next event.
    void EventSend(const EventValue& value) const {
        for (const FormEvent& listener : std::vector<FormEvent>(listeners_)) {
            listener(value);
        }
    }

  private:
    std::vector<FormEvent> listeners_;
};

}  // namespace mip

// held_ptr<T>: makes an object of class T (derived from COMObject) and holds on to it: as long as it does, a
// foreign client that releases the object once too often takes nothing away. For objects that are lent to
// components which others wrote.
#pragma once

#include "com/com_object.h"
#include "com/com_ptr.h"

namespace com {

template <typename T>
class held_ptr {
  public:
    held_ptr() noexcept = default;
    held_ptr(held_ptr&&) noexcept = default;
    held_ptr& operator=(held_ptr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~held_ptr() {
        if (object_) {
            static_cast<COMObject&>(*object_).isHeld_ = false;
        }
    }

    template <typename... Arguments>
    static held_ptr make(Arguments&&... arguments) {
        held_ptr result;
        result.object_ = com::make<T>(std::forward<Arguments>(arguments)...);
        static_cast<COMObject&>(*result.object_).isHeld_ = true;
        return result;
    }

    T* get() const noexcept { return object_.get(); }
    T* operator->() const noexcept { return object_.get(); }
    T& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return static_cast<bool>(object_); }

  private:
    com_ptr<T> object_;
};

} // namespace com

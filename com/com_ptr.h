// com_ptr<T>: owns one reference to a COM object. The two factories say where the reference comes from:
// attach() takes over one that the caller already owns, share() adds one.
#pragma once

#include "com/platform.h"

#include <concepts>
#include <cstddef>
#include <utility>

namespace com {

template <typename T>
class com_ptr {
  public:
    com_ptr() noexcept = default;
    com_ptr(std::nullptr_t) noexcept {}
    com_ptr(const com_ptr& other) noexcept : pointer_{other.pointer_} { addReference(); }
    com_ptr(com_ptr&& other) noexcept : pointer_{other.release()} {}
    template <std::derived_from<T> U>
    com_ptr(com_ptr<U> other) noexcept : pointer_{other.release()} {}
    ~com_ptr() { reset(); }

    com_ptr& operator=(com_ptr other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }

    static com_ptr attach(T* owned) noexcept {
        com_ptr result;
        result.pointer_ = owned;
        return result;
    }
    static com_ptr share(T* borrowed) noexcept {
        com_ptr result = attach(borrowed);
        result.addReference();
        return result;
    }

    T* get() const noexcept { return pointer_; }
    T* operator->() const noexcept { return pointer_; }
    T& operator*() const noexcept { return *pointer_; }
    explicit operator bool() const noexcept { return pointer_ != nullptr; }

    /// The address for an out-parameter; what was held is let go first.
    T** put() noexcept {
        reset();
        return &pointer_;
    }
    void** putVoid() noexcept { return reinterpret_cast<void**>(put()); }

    /// Gives the reference away, as an out-parameter or return value wants it.
    [[nodiscard]] T* release() noexcept { return std::exchange(pointer_, nullptr); }

    void reset() noexcept {
        if (T* old = std::exchange(pointer_, nullptr)) {
            old->Release();
        }
    }

    /// Another interface of the object, or empty when it has none. A server that answers S_OK with a null
    /// pointer counts as having none.
    template <typename I>
    com_ptr<I> tryAs() const noexcept {
        return query<I>(pointer_);
    }

    template <typename I>
    static com_ptr<I> query(IUnknown* object) noexcept {
        com_ptr<I> result;
        if (object != nullptr && FAILED(object->QueryInterface(__uuidof(I), result.putVoid()))) {
            // A failing query must leave null; a careless server may not.
            static_cast<void>(result.release());
        }
        return result;
    }

  private:
    void addReference() const noexcept {
        if (pointer_ != nullptr) {
            pointer_->AddRef();
        }
    }

    T* pointer_ = nullptr;
};

/// Asks any COM object for the interface I; empty when the object is null or has no such interface.
template <typename I>
com_ptr<I> queryFor(IUnknown* object) noexcept {
    return com_ptr<I>::template query<I>(object);
}

/// Makes an object of class T (derived from COMObject) and owns its first reference.
template <typename T, typename... Arguments>
com_ptr<T> make(Arguments&&... arguments) {
    return com_ptr<T>::share(new T(std::forward<Arguments>(arguments)...));
}

} // namespace com

// The scripted package and manager inside a test program: as long as one of these lives, CoCreateInstance
// finds the class in this process, while the test holds its script.
//
//   scripted::Package package;
//   scripted::Manager manager{package};
//
// They belong to the thread's apartment, which the test must have entered.
#pragma once

#include "tests/scripted_package/script.h"

namespace scripted {

// {7C0C0A57-5D0E-4F53-9B0B-0C8B8B3C55A1} and {7C0C0A57-5D0E-4F53-9B0B-0C8B8B3C55A2}
inline constexpr CLSID packageInProcess = {
    0x7C0C0A57, 0x5D0E, 0x4F53, {0x9B, 0x0B, 0x0C, 0x8B, 0x8B, 0x3C, 0x55, 0xA1}};
inline constexpr CLSID managerInProcess = {
    0x7C0C0A57, 0x5D0E, 0x4F53, {0x9B, 0x0B, 0x0C, 0x8B, 0x8B, 0x3C, 0x55, 0xA2}};

/// A class object registered for this process; taken back by the destructor.
class Registration {
  public:
    /// Gives an object with one reference, or throws the Failure that the creation ends with.
    using Maker = std::function<IUnknown*()>;

    Registration(REFCLSID clsid, Maker maker, DWORD context = CLSCTX_INPROC_SERVER);
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    ~Registration();

  private:
    DWORD cookie_ = 0;
};

/// The script of all objects of one class, with the vocabulary of Script.
class Scripted {
  public:
    Script* operator->() const noexcept { return script_.get(); }
    Script& operator*() const noexcept { return *script_; }
    const std::shared_ptr<Script>& shared() const noexcept { return script_; }

  private:
    std::shared_ptr<Script> script_ = std::make_shared<Script>();
};

class Package : public Scripted {
  public:
    /// `context`: how the class is offered, in this process or as a program's.
    explicit Package(DWORD context = CLSCTX_INPROC_SERVER);

  private:
    Registration registration_;
};

class Manager : public Scripted {
  public:
    explicit Manager(const Package& package);

  private:
    Registration registration_;
};

/// Objects of the scripted component that are alive.
long liveObjects() noexcept;

} // namespace scripted

// MessageBoxes: those that tell the user, during one call, which packages were not saved or restored.
#pragma once

#include <string>

namespace quorvane {

class MessageBoxes {
  public:
    MessageBoxes() = default;
    MessageBoxes(const MessageBoxes&) = delete;
    MessageBoxes& operator=(const MessageBoxes&) = delete;
    /// For programs that run without a screen the last message stays in the thread's Automation error
    /// information, although the call succeeds: from the call's end on, because the packages that are saved
    /// or restored after the message may leave error information of their own.
    ~MessageBoxes();

    /// Shows the message until the user closes it.
    void show(const std::wstring& message);

  private:
    std::wstring last_;
};

} // namespace quorvane

// Where an error that no handler of the window expects comes to rest. Exceptions must not cross the toolkit's
// frames, so every handler runs inside Run: the first exception is kept, every event loop is told to end, and
// whoever started a nested loop calls RethrowIfTripped behind it. So the error unwinds, one loop at a time,
// to the function that started the tool.
#pragma once

#include <exception>
#include <functional>

namespace ui {

class ErrorTrap {
  public:
    /// Runs a handler of the window. Once the trap has tripped, handlers no longer run.
    void Run(const std::function<void()>& handler);

    /// Throws the error that was kept, if there is one. Comes after every nested event loop.
    void RethrowIfTripped() const;

  private:
    std::exception_ptr mFirst;
};

}  // namespace ui

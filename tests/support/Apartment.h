#pragma once
// A COM apartment beside that of the test, in a thread of its own.

#include <windows.h>

#include <exception>
#include <functional>

namespace zeq::test {

class Apartment {
 public:
  enum class Kind { singleThreaded, multiThreaded };

  explicit Apartment(Kind kind = Kind::singleThreaded);
  ~Apartment();
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

  /// Starts work in the apartment, which serves calls from others whenever it has none.
  void start(std::function<void()> work);
  /// Waits for the work to end and serves calls to the calling apartment meanwhile. Throws what the work
  /// threw.
  void finish();
  void run(std::function<void()> work) {
    start(std::move(work));
    finish();
  }

 private:
  static DWORD WINAPI serve(void* self);
  void serve();

  Kind kind_;
  std::function<void()> work_;  ///< Empty for the end.
  std::exception_ptr failure_;
  HANDLE wanted_ = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  HANDLE done_ = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  HANDLE thread_;
};

}  // namespace zeq::test

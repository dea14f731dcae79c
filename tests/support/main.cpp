// The test programs' entry point: the tests run in a single-threaded apartment, as the library's clients do.

#include <windows.h>
#include <gmock/gmock.h>
#include <objbase.h>

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
    return 1;
  }
  const int result = RUN_ALL_TESTS();
  CoUninitialize();
  return result;
}

#include "sheet/cli/commands.h"
#include "sheet/cli/text.h"

#include <objbase.h>

namespace {

// Excel's functions run in a single-threaded apartment; so do these.
class Apartment {
  public:
    Apartment() noexcept : code_{CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)} {}
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() {
        if (SUCCEEDED(code_)) {
            CoUninitialize();
        }
    }

  private:
    HRESULT code_;
};

} // namespace

int wmain(int count, wchar_t** words) {
    using namespace sheet::cli;
    const Apartment apartment;
    try {
        std::vector<std::string> arguments;
        for (int i = 1; i < count; ++i) {
            arguments.push_back(toUtf8(words[i]));
        }
        return run(readCommandLine(arguments));
    } catch (const std::bad_alloc&) {
        return reject("there is not enough memory");
    } catch (const std::exception& error) {
        return reject(error.what());
    }
}

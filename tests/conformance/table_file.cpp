#include "tests/conformance/table_file.h"

#include "com/platform.h"

#include <fstream>
#include <iterator>
#include <sstream>

namespace conformance {

const Table& table() {
    static const Table read = [] {
        wchar_t program[1024];
        GetModuleFileNameW(nullptr, program, static_cast<DWORD>(std::size(program)));
        std::wstring path{program};
        path.resize(path.rfind(L'\\') + 1);
        std::ifstream file{(path + L"worksheet_functions.txt").c_str(), std::ios::binary};
        std::ostringstream text;
        text << file.rdbuf();
        return readTable(text.str());
    }();
    return read;
}

} // namespace conformance

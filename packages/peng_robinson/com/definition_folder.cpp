#include "packages/peng_robinson/com/definition_folder.h"

#include "packages/peng_robinson/com/values.h"
#include "packages/peng_robinson/definition/definition.h"

#include <algorithm>
#include <fstream>
#include <system_error>

namespace peng_robinson {
namespace {

// Asked of Windows itself: a program may have changed the variable since it began.
std::wstring environment(const wchar_t* name) {
    std::wstring value(32767, L'\0'); // no variable is longer
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}

std::filesystem::path folderPath() {
    if (std::wstring chosen = environment(L"PENGROBINSON_PACKAGES"); !chosen.empty()) {
        return chosen;
    }
    const std::wstring local = environment(L"LOCALAPPDATA");
    return local.empty() ? std::filesystem::path{}
                         : std::filesystem::path{local} / L"Tarnwick" / L"PengRobinson";
}

bool isDefinition(const std::filesystem::directory_entry& entry) {
    const std::wstring extension = entry.path().extension().wstring();
    std::error_code ignored; // what cannot be asked is no file
    return (isSameName(extension, L".txt") || isSameName(extension, L".csv")) &&
           entry.is_regular_file(ignored);
}

[[noreturn]] void fail(const std::wstring& description) {
    throw CapeError{ECapeFailedInitialisationHR, description};
}

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file{path, std::ios::binary};
    // One byte more than a definition may have shows that it is too large.
    std::string content(largestDefinition + 1, '\0');
    file.read(content.data(), static_cast<std::streamsize>(content.size()));
    if (!file.is_open() || file.bad()) {
        fail(path.wstring() + L": the file cannot be read");
    }
    content.resize(static_cast<std::size_t>(file.gcount()));
    return content;
}

} // namespace

std::shared_ptr<const Catalogue> DefinitionFile::read() const {
    const std::string content = contentOf(path);
    try {
        return readDefinition(content, narrow(name));
    } catch (const DefinitionError& error) {
        const std::wstring line = error.line() == 0 ? L"" : L", line " + std::to_wstring(error.line());
        fail(path.wstring() + line + L": " + widen(error.what()));
    }
}

DefinitionFolder DefinitionFolder::look() {
    DefinitionFolder folder;
    folder.path = folderPath();
    std::error_code error;
    std::filesystem::directory_iterator entry{folder.path, error};
    for (; !error && entry != std::filesystem::directory_iterator{}; entry.increment(error)) {
        if (isDefinition(*entry)) {
            folder.files.push_back({entry->path().stem().wstring(), entry->path()});
        }
    }
    folder.isReadable = !error || error == std::errc::no_such_file_or_directory;
    std::ranges::sort(folder.files, [](const DefinitionFile& a, const DefinitionFile& b) {
        const int order = CompareStringOrdinal(a.name.c_str(), -1, b.name.c_str(), -1, TRUE);
        return order == CSTR_EQUAL ? a.path < b.path : order == CSTR_LESS_THAN;
    });
    return folder;
}

std::vector<DefinitionFile> DefinitionFolder::filesOf(std::wstring_view packageName) const {
    std::vector<DefinitionFile> found;
    std::ranges::copy_if(files, std::back_inserter(found), [packageName](const DefinitionFile& file) {
        return isSameName(file.name, packageName);
    });
    return found;
}

} // namespace peng_robinson

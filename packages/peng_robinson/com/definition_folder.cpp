#include "packages/peng_robinson/com/definition_folder.h"

#include "com/owned.h"
#include "packages/peng_robinson/com/values.h"
#include "packages/peng_robinson/definition/definition.h"

#include <algorithm>
#include <fstream>

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

struct search_traits {
    using pointer = HANDLE;
    static void close(HANDLE search) noexcept { FindClose(search); }
};
using unique_search = com::unique_resource<search_traits>;

bool isDefinition(const std::filesystem::path& name, const WIN32_FIND_DATAW& file) {
    const std::wstring extension = name.extension().wstring();
    return (isSameName(extension, L".txt") || isSameName(extension, L".csv")) &&
           (file.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

// What Windows says when there is nothing more, or no such folder.
bool isOnlyTheEnd(DWORD error) {
    return error == ERROR_NO_MORE_FILES || error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
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
    if (folder.path.empty()) {
        return folder;
    }
    // Not with the standard library, whose search for files ends the process when there is no memory for a
    // name.
    WIN32_FIND_DATAW file{};
    const HANDLE begun = FindFirstFileW((folder.path / L"*").c_str(), &file);
    const unique_search search{begun == INVALID_HANDLE_VALUE ? nullptr : begun};
    for (bool isFound = static_cast<bool>(search); isFound; isFound = FindNextFileW(begun, &file) != 0) {
        const std::filesystem::path name{static_cast<const wchar_t*>(file.cFileName)};
        if (isDefinition(name, file)) {
            folder.files.push_back({name.stem().wstring(), folder.path / name});
        }
    }
    folder.isReadable = isOnlyTheEnd(GetLastError());
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

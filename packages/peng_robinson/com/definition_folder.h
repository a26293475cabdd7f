// The folder into which users put package definitions: the one that the environment variable
// PENGROBINSON_PACKAGES names, or %LOCALAPPDATA%\Tarnwick\PengRobinson where that is unset.
#pragma once

#include "packages/peng_robinson/catalogue/catalogue.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace peng_robinson {

struct DefinitionFile {
    std::wstring name; ///< of the package: the file's name without extension
    std::filesystem::path path;

    /// Throws CapeError that names file, line and reason when the definition has a mistake.
    std::shared_ptr<const Catalogue> read() const;
};

/// What the folder holds at this moment.
struct DefinitionFolder {
    std::filesystem::path path;
    std::vector<DefinitionFile> files; ///< *.txt and *.csv, by name
    bool isReadable = true;            ///< also when it does not exist

    static DefinitionFolder look();

    std::vector<DefinitionFile> filesOf(std::wstring_view packageName) const;
};

} // namespace peng_robinson

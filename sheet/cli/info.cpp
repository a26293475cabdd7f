#include "sheet/cli/add_in.h"
#include "sheet/cli/commands.h"
#include "sheet/cli/files.h"
#include "sheet/cli/packages.h"

#include <sstream>

namespace sheet::cli {

int info(const Info& command) {
    const Attachments attachments{command.packages};
    AddIn addIn{"packages"};
    attachments.enter(addIn);
    std::string text;
    for (const std::string& name : addIn.packageNames()) {
        text += (text.empty() ? "" : "\n") + name + '\n';
        std::istringstream lines{addIn.describe(name)};
        for (std::string line; std::getline(lines, line);) {
            text += "  " + line + '\n';
        }
    }
    print(Stream::output, text.empty() ? "No packages are attached.\n" : text);
    return success;
}

} // namespace sheet::cli

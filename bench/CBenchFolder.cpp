#include "bench/CBenchFolder.h"

#include <stdlib.h>

#include <iostream>
#include <stdexcept>

#include "shell/language.h"
#include "shell/paths.h"

namespace fs = std::filesystem;

namespace {

fs::path MakeRoot() {
    std::string name = (fs::temp_directory_path() / "drovane-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    fs::copy(DROVANE_PROGRAM_FOLDER, name, fs::copy_options::recursive);
    return name;
}

}  // namespace

CBenchFolder::CBenchFolder()
    : m_root(MakeRoot()),
      m_files(m_root),
      m_prompts(std::cerr, false),
      m_seams({&m_prompts, nullptr, &m_files, nullptr}) {
    SetAppFolder(CHostFiles::PathText(m_root.string()).value());
    LoadLanguageTable();
}

CBenchFolder::~CBenchFolder() {
    std::error_code error;
    fs::remove_all(m_root, error);
}

std::string CBenchFolder::Path(std::string_view name) const {
    return CHostFiles::PathText(Host(name).string()).value();
}

std::string CBenchFolder::MakeProject(std::string_view fileName, std::string_view criterion) const {
    const fs::path project = Host("db") / fileName;
    fs::copy_file(Host("db/Criterion") / criterion, project);
    return CHostFiles::PathText(project.string()).value();
}

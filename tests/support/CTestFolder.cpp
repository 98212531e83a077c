#include "tests/support/CTestFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <iterator>

#include "shell/language.h"
#include "shell/paths.h"
#include "shell/settings.h"

namespace fs = std::filesystem;

namespace {

fs::path MakeRoot() {
    std::string name = (fs::temp_directory_path() / "drovane-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    fs::copy(DROVANE_PROGRAM_FOLDER, name, fs::copy_options::recursive);
    return name;
}

}  // namespace

bool CRecordingDesktop::OpenFile(std::string_view path) {
    Opened.emplace_back(path);
    return CanOpen;
}

bool CRecordingDesktop::StartProcess(std::string_view program, const std::vector<std::string>& arguments,
                                     std::string_view folder,
                                     const std::function<void(const std::string&)>&) {
    Started.push_back({std::string(program), arguments, std::string(folder)});
    return true;
}

bool CRecordingDesktop::CopyToTrash(std::string_view path) {
    if (TakesTrash) {
        Trashed.push_back(ReadHostFile(HostFiles().HostPath(path)));
    }
    return TakesTrash;
}

CTestFolder::CTestFolder()
    : m_root(MakeRoot()),
      m_files(m_root),
      m_seams({&Prompts, &Clock, &m_files, &Desktop}),
      m_formerFolder(fs::current_path()) {
    SetAppFolder(CHostFiles::PathText(m_root.string()).value());
    LoadSettings();
    LoadLanguageTable();
}

CTestFolder::~CTestFolder() {
    fs::current_path(m_formerFolder);
    std::error_code error;
    fs::remove_all(m_root, error);
}

std::string CTestFolder::Path(std::string_view name) const {
    return CHostFiles::PathText(Host(name).string()).value();
}

std::string CTestFolder::WriteFile(std::string_view name, std::string_view bytes) const {
    fs::create_directories(Host(name).parent_path());
    std::ofstream(Host(name), std::ios::binary) << bytes;
    return Path(name);
}

std::string CTestFolder::ReadFile(std::string_view name) const {
    return ReadHostFile(Host(name));
}

std::string CTestFolder::MakeProject(std::string_view fileName, std::string_view standard) const {
    const fs::path project = Host("db") / fileName;
    fs::copy_file(Host("db/Criterion") / (std::string(standard) + ".mdb"), project);
    return CHostFiles::PathText(project.string()).value();
}

void CTestFolder::UseLanguage(std::string_view name) const {
    SetLanguageName(name);
    LoadLanguageTable();
}

std::string ReadHostFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

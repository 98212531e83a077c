#include "bench/fieldfolder.h"

#include <filesystem>
#include <fstream>

#include "bench/CBenchFolder.h"
#include "bench/require.h"
#include "fieldimport/acquisitionimport.h"
#include "store/CDbRec.h"

namespace {

std::string Description(int items) {
    std::string xml =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<cfg><mdata name=\"n\" gentime=\"2026-03-14 09:26:53\">"
        "<videofilename value=\"v.avi\"/>";
    for (int i = 1; i <= 18; ++i) {
        xml += "<osd" + std::to_string(i) + " value=\"" + std::to_string(i) + "\"/>";
    }
    for (int i = 0; i < items; ++i) {
        const std::string n = std::to_string(i);
        xml += "<item index=\"" + n + "\" name=\"n\" code=\"PL\" fullname=\"f\" dist=\"" + n +
               ".5\" len=\"0.4\" Longitude=\"113.2\" Latitude=\"23.1\" type=\"t\" time=\"0309\" level=\"2\" "
               "codeid=\"1\" itemid=\"1\" gentime=\"2026-03-14\"><picfilename value=\"" +
               n + ".jpg\" time=\"" + n + ".2\"/><desc>裂口</desc></item>";
    }
    return xml + "</mdata></cfg>";
}

}  // namespace

void MakeFieldFolder(const CBenchFolder& folder, const std::string& name, int items) {
    std::filesystem::create_directories(folder.Host(name));
    std::ofstream(folder.Host(name + "/d.xml")) << Description(items);
    for (int i = 0; i < items; ++i) {
        std::ofstream(folder.Host(name + "/" + std::to_string(i) + ".jpg")) << std::string(4000, 'x');
    }
}

std::function<void()> EmptyProject(const CBenchFolder& folder) {
    return [&folder] {
        std::filesystem::remove(folder.Host("db/import.mdb"));
        if (std::filesystem::exists(folder.Host("word"))) {
            static int aside = 0;
            std::filesystem::rename(folder.Host("word"), folder.Host("word" + std::to_string(aside++)));
        }
        (void)folder.MakeProject("import.mdb");
    };
}

std::function<void()> Import(const CBenchFolder& folder, const std::string& name) {
    return [&folder, name] {
        CDbRec database;
        Require(database.OpenDatabase(folder.Path("db/import.mdb"), CDbPassword), "open");
        Require(ImportAcquisition(database, folder.Path(name + "/d.xml"), [](const std::string&) {}),
                "import");
    };
}

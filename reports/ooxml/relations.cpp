#include "reports/ooxml/relations.h"

#include <string_view>

std::string RelationsName(const std::string& part) {
    const std::size_t slash = part.rfind('/');
    const std::size_t name = slash == part.npos ? 0 : slash + 1;
    return part.substr(0, name) + "_rels/" + part.substr(name) + ".rels";
}

std::string ResolveTarget(const std::string& from, const std::string& target) {
    if (target.starts_with('/')) {
        return target.substr(1);
    }
    std::string folder = from.substr(0, from.rfind('/') == from.npos ? 0 : from.rfind('/') + 1);
    std::string_view rest = target;
    while (rest.starts_with("../") || rest.starts_with("./")) {
        const bool up = rest.starts_with("../");
        rest.remove_prefix(up ? 3 : 2);
        if (up && !folder.empty()) {
            folder.pop_back();
            folder.resize(folder.rfind('/') == folder.npos ? 0 : folder.rfind('/') + 1);
        }
    }
    return folder.append(rest);
}

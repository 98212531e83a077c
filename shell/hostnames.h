// Paths of this machine taken apart and put together, as texts.
#pragma once

#include <algorithm>
#include <string>

inline std::string ParentOf(const std::string& hostPath) {
    const std::size_t slash = hostPath.rfind('/');
    return slash == std::string::npos ? "." : hostPath.substr(0, std::max<std::size_t>(slash, 1));
}

inline std::string Join(const std::string& folder, const std::string& name) {
    return folder.ends_with('/') ? folder + name : folder + '/' + name;
}

inline std::string NameOf(const std::string& hostPath) {
    return hostPath.substr(hostPath.rfind('/') + 1);
}

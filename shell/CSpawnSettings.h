// What posix_spawn is to do with a new process; released when it ends.
#pragma once

#include <spawn.h>

class CSpawnSettings {
public:
    CSpawnSettings() {
        posix_spawn_file_actions_init(&Actions);
        posix_spawnattr_init(&Attributes);
    }
    ~CSpawnSettings() {
        posix_spawn_file_actions_destroy(&Actions);
        posix_spawnattr_destroy(&Attributes);
    }
    CSpawnSettings(const CSpawnSettings&) = delete;
    CSpawnSettings& operator=(const CSpawnSettings&) = delete;

    posix_spawn_file_actions_t Actions{};
    posix_spawnattr_t Attributes{};
};

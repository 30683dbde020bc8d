// What may be done to the folder hierarchy, by a client's command or by the administration.
#pragma once

#include <string>

#include "data/State.h"

namespace demoserver {

// Each returns a FolderStatus, or kSuccess when it did what it was asked; on success of createFolder `id` is
// the new folder's.
int createFolder(State& state, const std::string& parent, const std::string& name, int type, std::string& id);
int updateFolder(State& state, const std::string& id, const std::string& parent, const std::string& name);
int deleteFolder(State& state, const std::string& id);

// A sentence for a person.
std::string describeFolderStatus(int status);

}  // namespace demoserver

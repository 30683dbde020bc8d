// All that the server keeps, behind one transaction at a time.
#pragma once

#include <string>

#include "data/Database.h"
#include "data/FolderStore.h"
#include "data/ItemStore.h"

namespace demoserver {

struct State {
  explicit State(const std::string& file) : database(file), folders(database), items(database) {}

  Database database;
  FolderStore folders;
  ItemStore items;
};

}  // namespace demoserver
